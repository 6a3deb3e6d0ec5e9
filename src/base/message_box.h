#pragma once

#include <string>

/// Where a routine's modal messages go: an OK button only, no icon, the application's own title. UTF-8.
class MessageBox
{
public:
    virtual ~MessageBox() = default;
    virtual void show(const std::string& text) = 0;
};
