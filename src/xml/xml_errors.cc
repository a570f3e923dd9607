#include "xml/xml_errors.h"

#include <cstdarg>
#include <cstdio>
#include <string_view>
#include <vector>

#include <libxml/globals.h>

#include "veld/runtime/automation_error.h"

namespace veld::xml_internal {

std::string TrimMessage(std::string message) {
  size_t end = message.find_last_not_of(" \t\r\n");
  message.erase(end == std::string::npos ? 0 : end + 1);
  return message;
}

void ErrorCollector::Add(const xmlError* error) {
  if (error == nullptr) return;
  std::string message = TrimMessage(error->message != nullptr ? error->message : "");
  if (error->level == XML_ERR_WARNING || error->level == XML_ERR_NONE) {
    if (first_warning_.empty()) first_warning_ = message;
    return;
  }
  if (has_error_) {
    if (first_.message.empty()) first_.message = std::move(message);
    return;
  }
  has_error_ = true;
  first_.code = error->code;
  first_.line = error->line;
  first_.column = error->int2;
  first_.message = std::move(message);
}

void ErrorCollector::AddText(const std::string& text) {
  // Bounded: a transform that reports in a loop must not grow this forever.
  if (text_.size() < 64 * 1024) text_ += text;
}

std::string ErrorCollector::Message() const {
  if (has_error_ && !first_.message.empty()) return first_.message;
  std::string_view rest(text_);
  while (!rest.empty()) {
    size_t end = rest.find('\n');
    std::string_view line = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    // libxslt prefixes each message with a line naming where it happened.
    if (line.starts_with("runtime error: ") || line.starts_with("compilation error: ")) continue;
    std::string trimmed = TrimMessage(std::string(line));
    if (!trimmed.empty()) return trimmed;
  }
  if (!text_.empty()) return TrimMessage(text_);
  return first_warning_;
}

void ErrorCollector::StructuredHandler(void* collector, xmlErrorPtr error) {
  static_cast<ErrorCollector*>(collector)->Add(error);
}

void ErrorCollector::GenericHandler(void* collector, const char* format, ...) {
  va_list args;
  va_start(args, format);
  va_list copy;
  va_copy(copy, args);
  int length = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  if (length > 0) {
    std::vector<char> text(static_cast<size_t>(length) + 1);
    std::vsnprintf(text.data(), text.size(), format, args);
    static_cast<ErrorCollector*>(collector)->AddText(std::string(text.data(), length));
  }
  va_end(args);
}

ScopedErrorCapture::ScopedErrorCapture(ErrorCollector& collector)
    : previous_structured_(xmlStructuredError),
      previous_structured_context_(xmlStructuredErrorContext),
      previous_generic_(xmlGenericError),
      previous_generic_context_(xmlGenericErrorContext) {
  xmlSetStructuredErrorFunc(&collector, &ErrorCollector::StructuredHandler);
  xmlSetGenericErrorFunc(&collector, &ErrorCollector::GenericHandler);
}

ScopedErrorCapture::~ScopedErrorCapture() {
  xmlSetStructuredErrorFunc(previous_structured_context_, previous_structured_);
  xmlSetGenericErrorFunc(previous_generic_context_, previous_generic_);
}

void RaiseXmlFailure(const std::string& message, const char* fallback) {
  RaiseError(errnum::kXmlFailure,
             message.empty() && fallback != nullptr ? std::string(fallback) : message);
}

}  // namespace veld::xml_internal
