// The optional pair in which the file functions report failures.
#pragma once

#include <tov310/system_error.h>
#include <tov310/types.h>

#include <string>
#include <system_error>

namespace tov {

// The code of a failure to reach what a path names: a missing name is 2, a missing directory on the way 3.
unsigned long PathErrorCode(std::error_code failure, std::string const& path);

// Clears the pair when it is made and fills it when something fails.
class FileReport {
 public:
    FileReport(unsigned long* error, CString* message) : m_error(error), m_message(message) {
        if (error != nullptr) *error = TOV_ERROR_NONE;
        if (message != nullptr) message->clear();
    }

    // Answers 1 for no failure; otherwise reports it and answers 0.
    int Result(unsigned long code) const {
        if (code == TOV_ERROR_NONE) return 1;
        if (m_error != nullptr) *m_error = code;
        if (m_message != nullptr) *m_message = TovSystemErrorText(code);
        return 0;
    }

 private:
    unsigned long* m_error;
    CString* m_message;
};

}  // namespace tov
