#!/bin/sh
# Draws the two pictures of the summary anew after an edit of their SVGs. Needs rsvg-convert (librsvg2-bin), the
# Liberation fonts and netpbm. The JPEGs are kept beside the SVGs, so that building needs none of these.
set -eu
cd "$(dirname "$0")"
for picture in maker_mark valve_on_tank; do
    rsvg-convert --background-color white "$picture.svg" | pngtopnm | pnmtojpeg -quality=95 >"$picture.jpg"
done
