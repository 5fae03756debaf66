#pragma once

#include <string>
#include <vector>

#include <wx/string.h>

namespace vpc::viewer {

/// A program's name and arguments as the system takes them: in its encoding, with a null at the
/// end.
class ArgumentVector {
public:
    /// \param program   UTF-8, as the arguments are
    ArgumentVector(const std::string& program, const std::vector<std::string>& arguments) {
        Add(program);
        for (const std::string& argument : arguments) Add(argument);
        for (const std::string& word : words_) pointers_.push_back(word.c_str());
        pointers_.push_back(nullptr);
    }
    ArgumentVector(const ArgumentVector&) = delete;
    ArgumentVector& operator=(const ArgumentVector&) = delete;

    const char* const* Data() const { return pointers_.data(); }

private:
    void Add(const std::string& word) {
        words_.emplace_back(wxString::FromUTF8(word).fn_str().data());
    }

    std::vector<std::string> words_;
    std::vector<const char*> pointers_;
};

}  // namespace vpc::viewer
