#pragma once

#include "base/message_box.h"

/// Modal message boxes on the desktop, over the active window.
class QtMessageBox : public MessageBox
{
public:
    void show(const std::string& text) override;
};
