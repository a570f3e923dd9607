// Raised errors and the thread's current runtime error.
//
// The library reports failures the way an automation runtime does: a raised
// error carries five facts (number, description, source, help file, help
// context), and every raise also sets the calling thread's current runtime
// error, which stays readable through veld::Err() until it is cleared or
// replaced by the next raise. Worker classes catch raised errors at their
// method boundary and copy the current runtime error into their own record.
#ifndef VELD_RUNTIME_AUTOMATION_ERROR_H_
#define VELD_RUNTIME_AUTOMATION_ERROR_H_

#include <cstdint>
#include <exception>
#include <string>

#include "veld/export.h"

namespace veld {

// The facts of one runtime error. Number 0 means "no error".
struct ErrorInfo {
  int32_t number = 0;
  std::string description;
  std::string source;
  std::string help_file;
  int32_t help_context = 0;
};

// A raised error. Thrown by every operation of the library that fails and
// does not record the failure instead.
class VELD_EXPORT AutomationError : public std::exception {
 public:
  explicit AutomationError(ErrorInfo info);
  AutomationError(int32_t number, std::string description, std::string source = "",
                  std::string help_file = "", int32_t help_context = 0);

  int32_t Number() const { return info_.number; }
  const std::string& Description() const { return info_.description; }
  const std::string& Source() const { return info_.source; }
  const std::string& HelpFile() const { return info_.help_file; }
  int32_t HelpContext() const { return info_.help_context; }
  const ErrorInfo& Info() const { return info_; }

  const char* what() const noexcept override;

 private:
  ErrorInfo info_;
};

// The current runtime error of a thread (the classic "Err" object).
class VELD_EXPORT ErrObject {
 public:
  int32_t Number() const { return info_.number; }
  const std::string& Description() const { return info_.description; }
  const std::string& Source() const { return info_.source; }
  const std::string& HelpFile() const { return info_.help_file; }
  int32_t HelpContext() const { return info_.help_context; }
  const ErrorInfo& Info() const { return info_; }

  // Number and help context become 0, the texts "".
  void Clear();
  // Replaces all five facts.
  void Set(const ErrorInfo& info);
  // Sets the five facts and throws them as an AutomationError. A description
  // left empty is filled with the runtime's text for the number.
  [[noreturn]] void Raise(int32_t number, const std::string& source = "",
                          const std::string& description = "", const std::string& help_file = "",
                          int32_t help_context = 0);

 private:
  ErrorInfo info_;
};

// The calling thread's current runtime error.
VELD_EXPORT ErrObject& Err();

// Sets the thread's current runtime error to `info` and throws it.
[[noreturn]] VELD_EXPORT void RaiseError(const ErrorInfo& info);

// Raises error `number` with the runtime's own text for it (for example
// 5 "Invalid procedure call or argument", 6 "Overflow").
[[noreturn]] VELD_EXPORT void RaiseError(int32_t number);

// Raises error `number` with the given description and no source.
[[noreturn]] VELD_EXPORT void RaiseError(int32_t number, const std::string& description);

// The runtime's description of a classic error number, or
// "Application-defined or object-defined error" for numbers it does not know.
VELD_EXPORT std::string ErrorText(int32_t number);

// Error numbers used across the library where the behaviour leaves them open.
namespace errnum {
inline constexpr int32_t kCheckFailed = -1;
inline constexpr int32_t kInvalidProcedureCall = 5;
inline constexpr int32_t kOverflow = 6;
inline constexpr int32_t kOutOfMemory = 7;
inline constexpr int32_t kSubscriptOutOfRange = 9;
inline constexpr int32_t kTypeMismatch = 13;
inline constexpr int32_t kFileNotFound = 53;
inline constexpr int32_t kFileAlreadyOpen = 55;
inline constexpr int32_t kFileAlreadyExists = 58;
inline constexpr int32_t kPermissionDenied = 70;
inline constexpr int32_t kPathFileAccessError = 75;
inline constexpr int32_t kPathNotFound = 76;
inline constexpr int32_t kObjectNotSet = 91;
inline constexpr int32_t kObjectRequired = 424;
inline constexpr int32_t kAutomationError = 440;
inline constexpr int32_t kDuplicateKey = 457;
// DOM or XPath failure, failed transform (E_FAIL).
inline constexpr int32_t kXmlFailure = -2147467259;
// File I/O inside the DOM.
inline constexpr int32_t kXmlPathNotFound = -2147024893;
inline constexpr int32_t kXmlAccessDenied = -2147024891;
// Database providers: a connection that cannot be opened (E_FAIL), a failed
// statement, an unknown table, a value a field rejects.
inline constexpr int32_t kDbFailure = -2147467259;
inline constexpr int32_t kDbCommandError = -2147217900;
inline constexpr int32_t kDbUnknownTable = -2147217865;
inline constexpr int32_t kDbValueNotConvertible = -2147217913;
}  // namespace errnum

}  // namespace veld

#endif  // VELD_RUNTIME_AUTOMATION_ERROR_H_
