# Makes a page of a Markdown file: cmake -DCMARK= -DFILE= -DPAGE= -P html_page.cmake
execute_process(COMMAND ${CMARK} -e table ${FILE} OUTPUT_VARIABLE body COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCH "<h1>([^<]*)</h1>" found "${body}")
set(heading "${CMAKE_MATCH_1}")
# The headings get the ids that links in Markdown lead to: "## 1. The Screen" is #1-the-screen.
string(REGEX MATCHALL "<h2>[^<]*</h2>" headings "${body}")
foreach(element ${headings})
    string(REGEX REPLACE "</?h2>" "" id ${element})
    string(TOLOWER ${id} id)
    string(REGEX REPLACE "[^a-z0-9 ]" "" id ${id})
    string(REPLACE " " "-" id ${id})
    string(REPLACE "<h2>" "<h2 id=\"${id}\">" anchored ${element})
    string(REPLACE ${element} ${anchored} body "${body}")
endforeach()
string(REGEX REPLACE "(href=\"[^\":]*)\\.md\"" "\\1.html\"" body "${body}")
file(WRITE ${PAGE} "<!DOCTYPE html>
<html lang=\"en\">
<head>
<meta charset=\"utf-8\">
<title>${heading} - Halvor-ORM Blanketing Valve Sizing</title>
<style>
body { max-width: 50em; margin: 2em auto; padding: 0 1em; font-family: sans-serif; line-height: 1.4 }
table { border-collapse: collapse }
th, td { border: 1px solid #767676; padding: 0.3em 0.6em; text-align: left; vertical-align: top }
img { max-width: 100% }
@media print {
  @page { margin: 15mm }
  body { max-width: none; margin: 0; padding: 0; font-size: 9pt; line-height: 1.2 }
  th, td { padding: 0.1em 0.4em }
  img { max-width: 60% }
}
</style>
</head>
<body>
${body}</body>
</html>
")
