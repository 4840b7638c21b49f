#include <tov310/dialog_template.h>

#include "frame/resource_module.h"
#include "vesk/immortal.h"
#include "views/dialog_resource.h"

#include <tov310/window.h>

#include <algorithm>
#include <list>
#include <mutex>
#include <utility>

namespace tov {
namespace {

Immortal<std::vector<ITovControlFactory*>>& Factories() {
    static Immortal<std::vector<ITovControlFactory*>> factories;  // of the user-interface thread
    return factories;
}

// Tells the faults; a dialog with any is of no use.
int FinishDialog(CTovDialogTemplate& dialog, std::vector<std::string> const& faults, CString* message) {
    if (message != nullptr) message->clear();
    if (faults.empty()) return 1;
    dialog = {};
    for (std::string const& fault : faults) {
        TovReportFault(fault.c_str());
        if (message != nullptr) message->append(message->empty() ? "" : "\n").append(fault);
    }
    return 0;
}

// The dialogs that were read last: most are shown again and again, and reading one takes a third of
// the time of making its controls. One is good as long as every text that it comes from is the same.
class DialogsReadLast {
 public:
    bool Find(std::string_view json, HINSTANCE module, CTovDialogTemplate& dialog) {
        std::lock_guard const lock(m_mutex);
        auto const found = std::ranges::find_if(m_dialogs, [&](Read const& read) {
            return read.module == module && read.dialog.name == dialog.name && read.json == json &&
                   read.texts.AreTheSame();
        });
        if (found == m_dialogs.end()) return false;
        dialog = found->dialog;
        m_dialogs.splice(m_dialogs.begin(), m_dialogs, found);
        return true;
    }

    void Keep(std::string_view json, HINSTANCE module, TextsById texts, CTovDialogTemplate const& dialog) {
        constexpr std::size_t most = 16;
        constexpr std::size_t longest = 0x10000;  // bytes
        if (json.size() > longest) return;
        std::lock_guard const lock(m_mutex);
        m_dialogs.push_front({std::string(json), module, std::move(texts), dialog});
        if (m_dialogs.size() > most) m_dialogs.pop_back();
    }

 private:
    struct Read {
        std::string json;
        HINSTANCE module;
        TextsById texts;
        CTovDialogTemplate dialog;
    };

    std::mutex m_mutex;
    std::list<Read> m_dialogs;
};

}  // namespace

int TovLoadDialogTemplate(HINSTANCE module, unsigned id, CTovDialogTemplate& dialog, CString* message) {
    return TovLoadDialogTemplate(module, std::to_string(id).c_str(), dialog, message);
}

int TovLoadDialogTemplate(HINSTANCE module, char const* name, CTovDialogTemplate& dialog, CString* message) {
    dialog = {};
    if (module == nullptr) module = TovGetTovResourceHandle();
    std::string const stem = std::string("dialogs/") + (name != nullptr ? name : "");
    dialog.name = stem + ".json";
    static Immortal<DialogsReadLast> readLast;
    for (HINSTANCE const asked : {module, TovBuiltInResourceModule()}) {
        std::vector<std::string> faults;
        std::string_view const json = asked->FindFile(dialog.name);
        if (json.data() != nullptr) {
            if (readLast->Find(json, module, dialog)) return FinishDialog(dialog, faults, message);
            TextsById texts(module);
            if (ParseDialogTemplate(json, texts, dialog, faults))
                readLast->Keep(json, module, std::move(texts), dialog);
            return FinishDialog(dialog, faults, message);
        }
        std::string_view const bytes = asked->FindFile(stem + ".dlg");
        std::string_view const init = asked->FindFile(stem + ".dlginit");
        if (bytes.data() != nullptr)
            return TovReadDialogTemplate((stem + ".dlg").c_str(), bytes, init, dialog, message);
    }
    return FinishDialog(dialog, {dialog.name + ": there is no such dialog"}, message);
}

int TovReadDialogTemplate(char const* name, std::string_view bytes, std::string_view init,
                          CTovDialogTemplate& dialog, CString* message) {
    dialog = {};
    dialog.name = name != nullptr ? name : "";
    std::vector<std::string> faults;
    ParseDlgTemplate(bytes, init, dialog, faults);
    return FinishDialog(dialog, faults, message);
}

void TovAddControlFactory(ITovControlFactory* factory) {
    TovRemoveControlFactory(factory);
    if (factory != nullptr) Factories()->push_back(factory);
}

void TovRemoveControlFactory(ITovControlFactory* factory) {
    std::erase(*Factories(), factory);
}

CWnd* TovCreateControl(char const* className, unsigned long style, CRect const& rect, CWnd* parent) {
    auto const factories = *Factories();
    for (auto factory = factories.rbegin(); factory != factories.rend(); ++factory) {
        if (CWnd* const made = (*factory)->CreateControl(className, style, rect, parent)) return made;
    }
    return nullptr;
}

}  // namespace tov
