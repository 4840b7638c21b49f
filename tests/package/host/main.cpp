// The smallest host: a window that answers a message, and a text of a module of its own.
#include <tov310/core.h>

#include <iostream>

struct Greeter : tov::CTovMessageWindow {
    tov::LRESULT WindowProc(unsigned message, tov::WPARAM wParam, tov::LPARAM lParam) override {
        if (message != tov::WM_TOV_PROPERTIES) return CTovMessageWindow::WindowProc(message, wParam, lParam);
        std::cout << "hello " << wParam << '\n';
        return 1;
    }
};

int main(int, char** argv) {
    Greeter window;
    window.Create();
    tov::TovPostMessage(window.GetSafeHwnd(), tov::WM_TOV_PROPERTIES, 3);
    if (tov::TovDispatchPosts() != 1) return 1;
    tov::CString text;
    tov::TovLoadResourceString(tov::TovLoadResourceModule(argv[1]), 26000, text);
    std::cout << text << '\n';
    return 0;
}
