#pragma once

class CapacityStore;
class MainScreen;
class MessageBox;
class NumberText;
struct SizingState;

/// What a sizing routine reaches: the record, the main form, the message box, the user's number texts and the data
/// file.
struct SizingContext
{
    SizingState& state;
    MainScreen& screen;
    MessageBox& messageBox;
    const NumberText& numbers;
    CapacityStore& store;
};
