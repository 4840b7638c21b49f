// Edits for those who do not see them.
#pragma once

namespace tov {

class CTovEdit;

// Has the toolkit's accessibility ask the library about its edits. Once is enough, and again does no harm.
void ShowEditsToAccessibility();

// The number of an edit that has one beside a spin is another.
void TellAccessibilityOfNumber(CTovEdit& edit);

}  // namespace tov
