#pragma once

#include <clocale>
#include <string>

namespace vpc::test {

/// Puts the C library into another locale for one test.
class LocaleGuard {
public:
    explicit LocaleGuard(const char* name)
        : before_(std::setlocale(LC_ALL, nullptr)), set_(std::setlocale(LC_ALL, name) != nullptr) {}
    LocaleGuard(const LocaleGuard&) = delete;
    LocaleGuard& operator=(const LocaleGuard&) = delete;
    ~LocaleGuard() { std::setlocale(LC_ALL, before_.c_str()); }

    /// Whether the system has that locale.
    bool isSet() const { return set_; }

private:
    std::string before_;
    bool set_;
};

}  // namespace vpc::test
