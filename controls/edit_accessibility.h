// Edits for those who do not see them.
#pragma once

namespace tov {

// Has the toolkit's accessibility ask the library about its edits. Once is enough, and again does no harm.
void ShowEditsToAccessibility();

}  // namespace tov
