#pragma once

/// How long one press of "Prin&t" waits for the printing system, in seconds. The program print_queue ends itself then,
/// should nobody else do it.
inline constexpr unsigned printPatience = 5;
