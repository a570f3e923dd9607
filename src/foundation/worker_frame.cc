#include "veld/foundation/worker_frame.h"

#include <exception>
#include <new>
#include <utility>

#include "veld/platform/platform.h"

namespace veld {

namespace {

// The project name that the runtime puts in front of the class name when a
// failure is raised without a source.
constexpr char kProjectName[] = "VeldCommonUtility";

}  // namespace

WorkerFrame::WorkerFrame(const FrameSettings& settings)
    : source_(std::string(kProjectName) + "." + settings.class_name) {
  m_cErrObj.SetDefaultErrorInfo(Variant(CurrentPlatform().ProductName()), settings.prefix_name);
}

WorkerFrame::~WorkerFrame() = default;

void WorkerFrame::RaiseLastError() { m_cErrObj.Raise(); }

std::string WorkerFrame::GetLastError() { return m_cErrObj.GetErrorMsg(); }

void WorkerFrame::Fail(const std::string& message) {
  RaiseError(ErrorInfo{errnum::kCheckFailed, message});
}

void WorkerFrame::RecordCurrentException() noexcept {
  ErrorInfo info;
  try {
    throw;
  } catch (const AutomationError& error) {
    info = error.Info();
  } catch (const std::bad_alloc&) {
    info = ErrorInfo{errnum::kOutOfMemory, ErrorText(errnum::kOutOfMemory)};
  } catch (const std::exception& error) {
    info = ErrorInfo{errnum::kAutomationError, error.what()};
  } catch (...) {
    info = ErrorInfo{errnum::kAutomationError, ErrorText(errnum::kAutomationError)};
  }
  try {
    if (info.source.empty()) info.source = source_;
    Err().Set(info);
    m_cErrObj.SetError(nullptr);
  } catch (...) {
    // Only allocation can fail here; the record keeps what it could take.
  }
}

DocumentFrame::DocumentFrame(const FrameSettings& settings)
    : WorkerFrame(settings), root_name_(settings.root_name) {
  Reset();
}

DocumentFrame::~DocumentFrame() = default;

void DocumentFrame::Reset() {
  m_cXmlDom = XmlDocument();
  if (!root_name_.empty()) GetRootElement();
}

XmlNode DocumentFrame::GetRootElement() {
  XmlNode root;
  Recorded([&] {
    XmlNode element = m_cXmlDom.DocumentElement();
    if (!element) {
      element = m_cXmlDom.CreateElement(root_name_);
      m_cXmlDom.AppendChild(element);
    }
    root = element;
  });
  return root;
}

}  // namespace veld
