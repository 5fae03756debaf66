#include "vpc/common/ShellWord.h"

namespace vpc {

std::string shellWord(const std::string& name) {
    constexpr const char* plain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-/+,:@%";
    if (!name.empty() && name.find_first_not_of(plain) == std::string::npos) return name;
    std::string word = "'";
    for (const char c : name) {
        if (c == '\'')
            word += "'\\''";
        else
            word += c;
    }
    return word + "'";
}

}  // namespace vpc
