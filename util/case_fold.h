// Letters without their case.
#pragma once

namespace tov {

// The character that stands for all cases of a letter, in every script and without regard to the locale: simple
// case folding of Unicode 14 (CaseFolding.txt, status C and S). Other characters, and numbers that are none,
// stay.
char32_t FoldCase(char32_t character);

}  // namespace tov
