// The toolkit's own dialog for files and directories.
#pragma once

#include <tov310/edit_filename.h>

namespace tov {

ITovBrowseForFile& ToolkitBrowse();

}  // namespace tov
