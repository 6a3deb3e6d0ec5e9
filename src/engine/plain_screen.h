#pragma once

#include "base/main_screen.h"
#include "base/message_box.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

/// A main screen without a window: boxes and captions in maps.
struct PlainScreen : MainScreen
{
    std::map<Box, std::string> boxes;
    std::map<Label, std::string> captions;
    std::optional<Box> current; ///< the box with the focus, after a refusal
    bool printEnabled = true;

    std::string text(Box box) const override { return valueOf(boxes, box); }
    std::string caption(Label label) const override { return valueOf(captions, label); }
    void setCaption(Label label, const std::string& text) override { captions[label] = text; }

    void refusedAt(Box box) override { current = box; }

    void modClearData() override
    {
        captions.clear();
        for (const Box box : clearedBoxes)
            boxes[box].clear();
        boxes[Box::txtTankVolume] = "0";
    }

    void setPrintEnabled(bool enabled) override { printEnabled = enabled; }

private:
    template <typename Key>
    static std::string valueOf(const std::map<Key, std::string>& texts, Key key)
    {
        const auto found = texts.find(key);
        return found == texts.end() ? std::string() : found->second;
    }
};

/// Keeps the texts of the message boxes instead of showing them.
struct RecordedMessages : MessageBox
{
    std::vector<std::string> texts;
    void show(const std::string& text) override { texts.push_back(text); }
};
