// The frame shared by the worker classes: their error record, the members
// RaiseLastError, GetLastError and Reset, and the recording protocol.
//
// Methods of a worker class never let a failure escape. Each public method
// runs its body through Recorded(): the record is cleared on entry, any
// failure inside (a check of the method, a DOM, file or runtime operation)
// is copied into m_cErrObj, and the method returns its result as it stood
// when the failure happened, normally its initial value (false, "", nullptr).
// The caller reads the failure with GetLastError or raises it with
// RaiseLastError.
#ifndef VELD_FOUNDATION_WORKER_FRAME_H_
#define VELD_FOUNDATION_WORKER_FRAME_H_

#include <string>

#include "veld/export.h"
#include "veld/foundation/kvo_err_object.h"
#include "veld/xml/xml_document.h"

namespace veld {

// How a worker class presents itself to its frame.
struct FrameSettings {
  // Names the class in the source of failures raised without a source:
  // "VeldCommonUtility." + class_name.
  const char* class_name;
  // The name the class declares to its record, which the record drops.
  const char* prefix_name;
  // The root element Reset creates ("config", "dataset"), or "" for none.
  const char* root_name;
};

class VELD_EXPORT WorkerFrame {
 public:
  WorkerFrame(const WorkerFrame&) = delete;
  WorkerFrame& operator=(const WorkerFrame&) = delete;

  // Raises the recorded failure as an AutomationError (number, description,
  // help file and help context of the record); does nothing when none is
  // recorded. The record stays, so a second call raises again.
  void RaiseLastError();

  // "" when nothing is recorded; the message alone for the library's own
  // check failures; otherwise the description followed by "(ERR#: " + number
  // + ")".
  std::string GetLastError();

 protected:
  explicit WorkerFrame(const FrameSettings& settings);
  ~WorkerFrame();

  // Runs `body` under the recording protocol: clears m_cErrObj, runs the body
  // and records whatever it raises. Never throws.
  template <class Body>
  void Recorded(Body&& body) noexcept {
    m_cErrObj.Clear();
    try {
      body();
    } catch (...) {
      RecordCurrentException();
    }
  }

  // Runs `body` like Recorded, but leaves a previous failure in m_cErrObj
  // when the body succeeds (for members that do not clear the record first).
  template <class Body>
  void RecordedKeepingLastError(Body&& body) noexcept {
    try {
      body();
    } catch (...) {
      RecordCurrentException();
    }
  }

  // Raises the library's own check failure: number -1 and `message`, with no
  // source, help file or help context.
  [[noreturn]] static void Fail(const std::string& message);

  KvoErrObject m_cErrObj;

 private:
  // Records the exception being handled into m_cErrObj through the thread's
  // current runtime error. Must be called from a catch block.
  void RecordCurrentException() noexcept;

  std::string source_;
};

// A worker frame that also owns an XML document, renewed by Reset.
class VELD_EXPORT DocumentFrame : public WorkerFrame {
 public:
  // Replaces m_cXmlDom with a new empty document. For classes with a root name
  // it then runs the root-creating step, which, being a recording step, clears
  // the last error; classes without a root name leave the record as it is.
  void Reset();

 protected:
  // The constructor runs Reset.
  explicit DocumentFrame(const FrameSettings& settings);
  ~DocumentFrame();

  // The root-creating step (a recording step): returns the document element of
  // m_cXmlDom, first creating and appending one with the class's root name
  // when there is none. On failure records it and returns a null node.
  XmlNode GetRootElement();

  XmlDocument m_cXmlDom;

 private:
  std::string root_name_;
};

}  // namespace veld

#endif  // VELD_FOUNDATION_WORKER_FRAME_H_
