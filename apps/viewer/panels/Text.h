#pragma once

#include <string>
#include <vector>

#include <wx/string.h>

namespace vpc::viewer {

/// Texts go as UTF-8 between the window and what lies below it.
std::string toUtf8(const wxString& text);
/// Bytes that are no UTF-8 are taken for Latin-1, so that a strange file name is still shown.
wxString fromUtf8(const std::string& text);

/// The sentences that are not empty, a line each.
std::string linesOf(const std::vector<std::string>& sentences);

/// A count with thin groups of three digits: "1 234 567".
wxString grouped(unsigned long long count);
/// With a point, whatever the locale.
wxString fixed(double value, int digits);

}  // namespace vpc::viewer
