#include "gallery.h"

#include "gallery_dialogs.h"
#include "gallery_page.h"
#include "window_ids.h"

#include <tov310/unit_settings.h>

#include <QHBoxLayout>
#include <QScrollArea>

#include <memory>

namespace survey {

Gallery::Gallery(QWidget* parent)
    : QWidget(parent),
      m_list(*std::make_unique<QListWidget>(this).release()),
      m_pages(*std::make_unique<QStackedWidget>(this).release()) {
    setWindowTitle(Words(textGallery));
    resize(760, 680);
    tov::CTovUnitSettingsAngle::Default().Unit(tov::TOV_UNIT_DMS);
    tov::CTovUnitSettingsAngleLatLon::Default().Unit(tov::TOV_UNIT_DMS);
    tov::CTovUnitSettingsDistance::Default().Unit(tov::TOV_UNIT_METRES);
    for (GalleryEntry const& entry : GalleryEntries()) {
        m_list.addItem(Words(entry.title));
        auto* const area = std::make_unique<QScrollArea>(&m_pages).release();
        auto page = std::make_unique<GalleryPage>(entry.title, area);
        page->setWindowTitle(Words(entry.title));
        entry.fill(*page);
        area->setWidgetResizable(true);
        area->setFrameShape(QFrame::NoFrame);
        m_all.push_back(page.get());
        area->setWidget(page.release());
        m_pages.addWidget(area);
    }
    m_list.addItem(Words(pageDialogs));
    m_pages.addWidget(std::make_unique<GalleryDialogs>(&m_pages).release());
    m_list.setFixedWidth(m_list.sizeHintForColumn(0) + 40);
    auto* const layout = std::make_unique<QHBoxLayout>(this).release();
    layout->addWidget(&m_list);
    layout->addWidget(&m_pages, 1);
    connect(&m_list, &QListWidget::currentRowChanged, &m_pages, &QStackedWidget::setCurrentIndex);
    ShowPage(0);
}

}  // namespace survey
