// Sending mails over a plain SMTP connection (RFC 5321): HELO, no extensions, no log-in, no encryption.
//
//     CTovSmtp smtp;
//     smtp.Server("mail.office.example");
//     if (!smtp.Connect() || !smtp.SendMailMessage(&mail)) Show(smtp.GetLastError());
//     smtp.Disconnect();
//
// Calls block their thread until the server answers, the connection fails, or the time is over that TimeOut
// sets. Nothing else happens on the thread meanwhile: messages wait until the call is over. One object has
// one connection, and one thread at a time may use it.
#pragma once

#include <tov310/mail_message.h>
#include <tov310/object.h>

#include <memory>
#include <string_view>

namespace tov {

class TOV_CORE_API CTovSmtp : public CObject {
    TOV_DYNCREATE(CTovSmtp, CObject)
 public:
    CTovSmtp();
    explicit CTovSmtp(CString server, unsigned int port = 25);  // a port that is none counts as 25
    CTovSmtp(CTovSmtp const&) = delete;
    CTovSmtp& operator=(CTovSmtp const&) = delete;
    ~CTovSmtp() override;  // disconnects

    // Connects and says HELO; tries each address of the server's name in turn. Answers 1, also when it is
    // connected already, or 0 with the reason in GetLastError.
    virtual int Connect();

    // Says QUIT and closes. Answers whether the server agreed; 1 when there is no connection.
    virtual int Disconnect();

    // Sends a mail. Answers 1 when the server has taken it, else 0. A recipient that the server refuses is
    // left out, and nothing tells so. After a refusal of anything else the connection stays, but the server
    // is still in the middle of the mail: disconnect. When the connection is lost it is closed here, too, and
    // Connect makes another one. What the composing of the mail throws (no memory, a host's part) comes
    // through; nothing of the text was sent then.
    //
    // A line of the header or the text that is a lone dot gets a second dot; lines end with CR, LF or both.
    // In a mail that is written strictly (mime.h) every line that begins with a dot gets one, each line end
    // becomes CR LF, and no line is longer than 998 bytes.
    virtual int SendMailMessage(CTovMailMessage* message);

    // Name or address of the server. Both setters answer 1, or 0 and change nothing while there is a
    // connection; a port is 1 to 65535.
    virtual CString Server() const;
    virtual int Server(CString server);
    virtual unsigned int Port() const;
    virtual int Port(unsigned int port);

    virtual int Connected() const;

    // The last failure as "code:text", "550:SMTP server error."; the code is what the server said, or 0, and
    // the text is in the language of the resource module. "OK" before the first; a success leaves it.
    virtual CString GetLastError() const;

    // How many milliseconds each address of the server, each reply, and each piece of the mail may take, of
    // which the system takes as many bytes as it has room for, at most 64 KiB; 0, as at first, is no limit.
    // What takes longer fails and closes the connection: with "Unable to connect to server.", "Server didn't
    // respond.", and after the greeting "Virtual circuit was aborted due to timeout or other failure."
    // Looking up the name has the limits of the system.
    void TimeOut(unsigned int milliseconds) { m_timeOut = milliseconds; }
    unsigned int TimeOut() const { return m_timeOut; }

 protected:
    // Rows of s_ResponseTable, for GetResponse.
    enum eResponse : unsigned int { GENERIC_SUCCESS, CONNECT_SUCCESS, DATA_SUCCESS, QUIT_SUCCESS };

    struct RESPONSE_CODE {
        unsigned int nResponse;  // the code that is expected
        unsigned int nTextId;    // of the error
    };
    static RESPONSE_CODE const s_ResponseTable[4];

    // For derived classes: the header as it is about to be sent. Does nothing here.
    virtual void PrepareHeader(CString& header);

    // Ends the text with CR LF and doubles dots, as told for SendMailMessage. An empty text stays empty in a
    // mail that is written strictly.
    virtual void PrepareBody(CString& body);

    // SendMailMessage without the wait cursor; 0 without an error for null. The mail is composed and prepared
    // when the recipients have been told, before DATA is sent.
    virtual int TransmitMailMessage(CTovMailMessage* message);

    // Waits for one block of at most 1024 bytes and compares its first three characters with the code of the
    // row. Answers 1, or sets the error and answers 0. Less than three characters, or none that are a number,
    // count as 0, as does a connection that the server has closed. After a recipient another code sets no
    // error.
    virtual int GetResponse(unsigned int row);

    // Makes GetLastError from the id of a text.
    virtual void SetError(unsigned int nTextId, unsigned int nCode);

 private:
    class CSmtpSocket;

    void Send(std::string_view bytes);
    void Close();
    int Greet();

    CString m_server;
    unsigned int m_port = 25;
    int m_connected = 0;
    CString m_lastError = "OK";
    std::unique_ptr<CSmtpSocket> m_socket;
    unsigned int m_timeOut = 0;
    unsigned int m_lastCode = 0;  // of the last reply
    int m_strict = 0;             // of the mail that is being sent
    int m_isAnyCodeGood = 0;      // as for a recipient
};

}  // namespace tov
