#include "veld/runtime/automation_error.h"

#include <utility>

namespace veld {

AutomationError::AutomationError(ErrorInfo info) : info_(std::move(info)) {}

AutomationError::AutomationError(int32_t number, std::string description, std::string source,
                                 std::string help_file, int32_t help_context)
    : info_{number, std::move(description), std::move(source), std::move(help_file), help_context} {
}

const char* AutomationError::what() const noexcept { return info_.description.c_str(); }

void ErrObject::Clear() { info_ = ErrorInfo{}; }

void ErrObject::Set(const ErrorInfo& info) { info_ = info; }

void ErrObject::Raise(int32_t number, const std::string& source, const std::string& description,
                      const std::string& help_file, int32_t help_context) {
  RaiseError(ErrorInfo{number, description.empty() ? ErrorText(number) : description, source,
                       help_file, help_context});
}

ErrObject& Err() {
  thread_local ErrObject err;
  return err;
}

void RaiseError(const ErrorInfo& info) {
  Err().Set(info);
  throw AutomationError(info);
}

void RaiseError(int32_t number) { RaiseError(ErrorInfo{number, ErrorText(number)}); }

void RaiseError(int32_t number, const std::string& description) {
  RaiseError(ErrorInfo{number, description});
}

std::string ErrorText(int32_t number) {
  switch (number) {
    case 3:
      return "Return without GoSub";
    case 5:
      return "Invalid procedure call or argument";
    case 6:
      return "Overflow";
    case 7:
      return "Out of memory";
    case 9:
      return "Subscript out of range";
    case 11:
      return "Division by zero";
    case 13:
      return "Type mismatch";
    case 52:
      return "Bad file name or number";
    case 53:
      return "File not found";
    case 55:
      return "File already open";
    case 57:
      return "Device I/O error";
    case 58:
      return "File already exists";
    case 61:
      return "Disk full";
    case 67:
      return "Too many files";
    case 68:
      return "Device unavailable";
    case 70:
      return "Permission denied";
    case 71:
      return "Disk not ready";
    case 75:
      return "Path/File access error";
    case 76:
      return "Path not found";
    case 91:
      return "Object variable or With block variable not set";
    case 94:
      return "Invalid use of Null";
    case 380:
      return "Invalid property value";
    case 424:
      return "Object required";
    case 438:
      return "Object doesn't support this property or method";
    case 440:
      return "Automation error";
    case 457:
      return "This key is already associated with an element of this collection";
    default:
      return "Application-defined or object-defined error";
  }
}

}  // namespace veld
