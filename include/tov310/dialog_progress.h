// The dialog that a long work on the user-interface thread shows: how far it is, what it does, and a button
// that ends it.
//
//   tov::CEvent stop;
//   tov::CTovDialogProgress progress(this);
//   progress.View(count, nullptr, "Search", &stop);
//   for (auto const& place : places) {
//       progress.Comment(place.name.c_str(), 1, 1);
//       if (progress.CheckAbort()) break;
//       ...
//   }
//   progress.Destroy();
#pragma once

#include <tov310/sync_event.h>
#include <tov310/tov_dialog.h>

#include <QPointer>

#include <memory>

namespace tov {

// Whoever works calls CheckAbort, StepIt or Comment at least every 50 milliseconds, and the button answers
// within 100: they deal with what the user does to this dialog, while all other windows wait (pump.h).
// Calling them much more often costs next to nothing.
class TOV_UI_API CTovDialogProgress : public CTovDialog {
    Q_OBJECT
    TOV_DYNAMIC(CTovDialogProgress, CTovDialog)
 public:
    // How much room there is above the bar for a dialog of the host's own (AddChildDialog), in dialog units.
    enum eStyles { eStylePlain = 0, eStyleRoom22 = 1, eStyleRoom33 = 2, eStyleRoom41 = 3 };

    // The parent is the window that the dialog belongs to, the centre the one in whose middle it is shown;
    // null is the parent and, without one, the screen. The object is the host's and survives the parent.
    explicit CTovDialogProgress(CWnd* parent = nullptr, CWnd* center = nullptr);
    explicit CTovDialogProgress(TovPlainWidget auto* parent, CWnd* center = nullptr)
        : CTovDialogProgress(TovWnd(parent), center) {}
    ~CTovDialogProgress() override;

    // Makes the dialog and begins to count. Null for a window keeps the one told before; an empty title
    // changes none. With an event there is a button to abort: pressing it, Escape and the closing of the
    // dialog set the event and are what CheckAbort tells of; the event is the host's and must outlive the
    // dialog's window. Where the dialog is there already only the title, the event and the count are new.
    // Answers 1, or 0 where the dialog cannot be made.
    int View(int steps, CWnd* parent = nullptr, char const* title = nullptr, CEvent* event = nullptr,
             CWnd* center = nullptr, int show = 1);
    int View(int steps, CWnd* parent, HINSTANCE module, unsigned titleId, CEvent* event = nullptr,
             CWnd* center = nullptr, int show = 1);
    int View(int steps, TovPlainWidget auto* parent, char const* title = nullptr, CEvent* event = nullptr,
             CWnd* center = nullptr, int show = 1) {
        return View(steps, TovWnd(parent), title, event, center, show);
    }

    // Begins anew with so many steps; with none the bar stays empty.
    void Steps(int steps);
    int Steps() const;
    int CurrentStep() const;  // the steps made
    void StepIt();

    // Whether the bar begins anew behind the last step; 0 at first, and then it stays full.
    void RestartOnOverflow(int restart);
    int RestartOnOverflow() const;

    // Says what is being done; with `step` a step is made, with `adjust` a text that is too long ends in
    // dots.
    void Comment(char const* text, int step = 0, int adjust = 0);
    void Comment(HINSTANCE module, unsigned id, int step = 0, int adjust = 0);
    int CommentWidth() const;  // pixels

    // Shows it, and comes back when it can be seen, or hides it. Answers whether it was shown before.
    int ShowWindow(int show);

    // Ends the window. The object can be used again.
    void Destroy();

    // Whether the user wants an end. Without an event he cannot.
    int CheckAbort();

    // For the next window; any other value is the plain one.
    void ProgressStyle(eStyles style);

    int DestroyWindow() override;

 Q_SIGNALS:
    void abortRequested();  // once, from within the call that finds it out

 protected:
    int OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;

 private:
    struct State;

    int Make();
    int MakeButton();
    void Center();
    void ShowPosition();
    void Breathe();

    std::unique_ptr<State> m_state;
};

}  // namespace tov
