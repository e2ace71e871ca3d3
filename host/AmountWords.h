#pragma once
// An amount in words as Indian papers write it under their total: the rupees grouped in
// thousand, lakh and crore, the paise after "and" ("Rupees One Lakh Ninety Seven Thousand
// Three Hundred Three and Fifty Paise Only").

#include "Amount.h"

#include <string>

namespace qx {

// Rounded to the paise, half to even. Under a rupee it is the paise alone ("Fifty Paise
// Only"); below zero it starts "Minus".
std::string AmountInWords(Amount value);

} // namespace qx
