#pragma once

#include <QString>
#include <exception>

namespace vbs {

/** Numbers of the language's run-time errors that native code raises. */
namespace err {
constexpr int kInvalidCall = 5;
constexpr int kOverflow = 6;
constexpr int kOutOfMemory = 7;
constexpr int kSubscript = 9;
constexpr int kArrayLocked = 10;
constexpr int kDivisionByZero = 11;
constexpr int kTypeMismatch = 13;
constexpr int kOutOfStack = 28;
constexpr int kInternal = 51;
constexpr int kBadFileName = 52;
constexpr int kFileNotFound = 53;
constexpr int kBadFileMode = 54;
constexpr int kDeviceIo = 57;
constexpr int kFileExists = 58;
constexpr int kDiskFull = 61;
constexpr int kPastEnd = 62;
constexpr int kPermissionDenied = 70;
constexpr int kPathAccess = 75;
constexpr int kPathNotFound = 76;
constexpr int kObjectNotSet = 91;
constexpr int kForNotInitialized = 92;
constexpr int kInvalidNull = 94;
constexpr int kObjectRequired = 424;
constexpr int kCannotCreate = 429;
constexpr int kClassNotFound = 432;
constexpr int kNoSuchMember = 438;
constexpr int kActionNotSupported = 445;
constexpr int kArgumentNotOptional = 449;
constexpr int kArgumentCount = 450;
constexpr int kNotCollection = 451;
constexpr int kKeyExists = 457;
constexpr int kInvalidPicture = 481;
constexpr int kUndefinedVariable = 500;
constexpr int kIllegalAssignment = 501;
constexpr int kUnqualified = 505;
constexpr int kClassNotDefined = 506;
constexpr int kElementNotFound = 32811;
}

/** Text of a run-time or compile error number; "Unknown runtime error" for any other. */
QString errorText(int number);

/**
 * What a script can meet and `On Error Resume Next` can catch: a number with its text.
 * Numbers are the language's own (13, 424 …) or whole negative HRESULTs of components.
 */
class ScriptError : public std::exception
{
public:
    /** The number's standard text; `culprit` is shown after it: "Type mismatch: 'x'". */
    explicit ScriptError(int number, const QString &culprit = {});
    /** A component's error with its own text and source ("Scripting.FileSystemObject" …). */
    static ScriptError fromComponent(int number, const QString &description, const QString &source);

    int number() const { return m_number; }
    /** What Err.Description shows: the text without the culprit. */
    const QString &description() const { return m_description; }
    /** What a host shows: with the culprit. */
    QString message() const;
    const QString &source() const { return m_source; }
    const QString &culprit() const { return m_culprit; }
    bool isCompileError() const { return m_compile; }
    const QString &helpFile() const { return m_helpFile; }
    int helpContext() const { return m_helpContext; }
    int line() const { return m_line; }     // 1-based, 0: not known yet
    int column() const { return m_column; } // 0-based
    void setPosition(int line, int column);
    void setCompileError();
    void setHelp(const QString &file, int context);
    const char *what() const noexcept override;

private:
    ScriptError() = default;

    int m_number = 0;
    QString m_description;
    QString m_culprit;
    QString m_source;
    QString m_helpFile;
    int m_helpContext = 0;
    int m_line = 0;
    int m_column = 0;
    bool m_compile = false;
    mutable QByteArray m_what;
};

/** The time limit of the outermost call is over. No script can catch it; native code lets it pass. */
class ScriptTimeout : public std::exception
{
public:
    const char *what() const noexcept override { return "script timed out"; }
};

/** The host ends the script on purpose (WScript.Quit). No script can catch it. */
class ScriptQuit : public std::exception
{
public:
    explicit ScriptQuit(int code) : m_code(code) {}
    int code() const { return m_code; }
    const char *what() const noexcept override { return "script quit"; }

private:
    int m_code;
};

}
