// Letters and written forms of angles.
#pragma once

#include <tov310/edit_angle_mask.h>

#include <optional>
#include <string>
#include <string_view>

namespace tov {

// The letter of a hemisphere in upper case; empty for eSignPlusMinus.
std::string HemisphereLetter(eSignType type, bool negative);

// The text with the capital letters of ASCII as small ones.
std::string LowerLetters(std::string_view text);

// Positions count characters; behind the last one stands the end.
int CountCharacters(std::string_view text);
std::size_t OffsetOfCharacter(std::string_view text, int position);

// Whether the character is the letter, in either case and also in English and Chinese.
bool IsHemisphereCharacter(eSignType type, bool negative, char32_t character);

// For which part the character is the sign: 0 for the degree sign. -1 for none.
int PartOfMark(char32_t character);

// Wide forms, the many dashes and blanks, as plain ones.
std::string WithPlainSigns(std::string_view text);

// How the parts of a written angle are divided.
enum class AngleDivision { kOfTheUnit, kSexagesimal, kCentesimal, kRadians, kTurns };

// An angle as it was written, in units of the first part.
struct WrittenAngle {
    AngleDivision division = AngleDivision::kOfTheUnit;
    double parts[3] = {0, 0, 0};  // degrees, minutes, seconds; gon, c, cc; else the first alone
    bool hasSign = false;
    bool isNegative = false;                // by the sign
    eSignType hemisphere = eSignPlusMinus;  // of which pair the letter is
    bool isSouthOrWest = false;
    bool isBare = false;    // one number and nothing else
    bool hasPoint = false;  // in any number
};

// Nothing where the text is no angle, or none that is sure: minutes or seconds of 60 or more, decimals before
// the last part, a sign and a letter, a letter that is not known.
std::optional<WrittenAngle> ReadWrittenAngle(std::string_view text);

}  // namespace tov
