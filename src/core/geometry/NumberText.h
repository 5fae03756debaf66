#pragma once

#include <string>

namespace vpc {

/// `value` as printf's "%.<decimals>f" writes it in the "C" locale: the same digits, with a
/// decimal point whatever locale the process runs in.
std::string fixedText(double value, int decimals = 6);

/// `value` as printf's "%.<digits>g" writes it in the "C" locale.
std::string generalText(double value, int digits = 6);

}  // namespace vpc
