// A window with every control of the library and its options.
#pragma once

#include <QListWidget>
#include <QStackedWidget>
#include <QWidget>

#include <vector>

namespace survey {

class GalleryPage;

// The list of the controls, and the page of the one that is chosen.
class Gallery : public QWidget {
 public:
    explicit Gallery(QWidget* parent = nullptr);

    int Count() const { return static_cast<int>(m_all.size()); }  // of controls; the dialogs follow
    void ShowPage(int index) { m_list.setCurrentRow(index); }
    GalleryPage& Page(int index) const { return *m_all[static_cast<std::size_t>(index)]; }

 private:
    QListWidget& m_list;
    QStackedWidget& m_pages;
    std::vector<GalleryPage*> m_all;
};

}  // namespace survey
