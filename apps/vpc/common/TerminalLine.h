#pragma once

#include <string>

namespace vpc {

/// One line on standard error that is written over again and again, as wide as the terminal.
class TerminalLine {
public:
    TerminalLine();
    ~TerminalLine() { Clear(); }
    TerminalLine(const TerminalLine&) = delete;
    TerminalLine& operator=(const TerminalLine&) = delete;

    /// Whether standard error is a terminal.
    bool IsPossible() const { return possible_; }
    /// Shows a bar that is full up to `share`, 0 to 1, then the share in percent and a text.
    void Show(double share, const std::string& text);
    /// Takes the line off the terminal, before something else is printed.
    void Clear();

private:
    bool possible_;
    bool shown_ = false;
};

/// A share, 0 to 1, in whole percent that has been reached, as "7 %".
std::string percentText(double share);

}  // namespace vpc
