// How far a search has come, and a button that ends it.
#pragma once

#include <tov310/dialog_progress.h>

#include <cstddef>

namespace survey {

// In all styles but the plain one it tells of numbers above its bar. It is shown as soon as it is made.
class SearchProgress : public tov::CTovDialogProgress {
 public:
    explicit SearchProgress(eStyles style, QWidget* parent = nullptr);
    ~SearchProgress() override;

    void Tell(std::size_t folders, std::size_t files, tov::CString const& pattern);

 private:
    tov::CEvent m_stop;
};

}  // namespace survey
