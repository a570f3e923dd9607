// KvoXmlHelper, and KvoProgressUpdater with Python callables as listeners.
#include <memory>
#include <string>

#include "veld/xml/xml_document.h"
#include "veld/xmlhelper/connection.h"
#include "veld/xmlhelper/kvo_progress_updater.h"
#include "veld/xmlhelper/kvo_xml_helper.h"

#include "bindings.h"

namespace veld_python {

namespace {

// A Python callable held by a listener: called with the GIL (the library
// may report progress from a call that released it), and let go with it.
class Listener {
 public:
  explicit Listener(py::function function)
      : function_(std::make_shared<Held>(std::move(function))) {}

  void operator()(int32_t total, int32_t current, const std::string& status) const {
    py::gil_scoped_acquire gil;
    // A listener that raises ends the notification: its exception reaches
    // the caller of ProgressChangeNotify, or the library call that reported.
    function_->function(total, current, status);
  }

 private:
  struct Held {
    explicit Held(py::function f) : function(std::move(f)) {}
    ~Held() {
      py::gil_scoped_acquire gil;
      function = py::function();
    }
    py::function function;
  };
  std::shared_ptr<Held> function_;
};

}  // namespace

void BindXmlHelper(py::module_& m) {
  using veld::Connection;
  using veld::KvoProgressUpdater;
  using veld::KvoXmlHelper;

  py::class_<Connection>(m, "Connection")
      .def("Disconnect", &Connection::Disconnect)
      .def_property_readonly("Connected", &Connection::Connected);

  py::class_<KvoProgressUpdater, std::shared_ptr<KvoProgressUpdater>>(m, "KvoProgressUpdater")
      .def(py::init<>())
      // The listener stays connected while the returned Connection lives.
      .def(
          "Connect",
          [](KvoProgressUpdater& self, py::function handler) {
            return self.Connect(Listener(std::move(handler)));
          },
          py::arg("handler"))
      .def("ProgressChangeNotify", &KvoProgressUpdater::ProgressChangeNotify, py::arg("nTotal"),
           py::arg("nCurrent"), py::arg("sStatus") = "");

  py::class_<KvoXmlHelper>(m, "KvoXmlHelper")
      .def(py::init<>())
      .def("GetLastError", &KvoXmlHelper::GetLastError)
      .def("RaiseLastError", &KvoXmlHelper::RaiseLastError)
      .def("Reset", &KvoXmlHelper::Reset)
      .def("LoadXml", &KvoXmlHelper::LoadXml, py::arg("sDataXml"))
      .def("LoadFile", &KvoXmlHelper::LoadFile, py::arg("sXmlFile"), ReleaseGil())
      .def("TransformDataToXmlDomDoc",
           WithOutput<KvoXmlHelper>(&KvoXmlHelper::TransformDataToXmlDomDoc), py::arg("sXslFile"))
      .def("TransformDataToXml", WithOutput<KvoXmlHelper>(&KvoXmlHelper::TransformDataToXml),
           py::arg("sXslFile"))
      .def("TransformData", &KvoXmlHelper::TransformData, py::arg("sXslFile"))
      .def("TransformDataToXmlFile", &KvoXmlHelper::TransformDataToXmlFile, py::arg("sXslFile"),
           py::arg("sTargetXmlFile"))
      .def("GetXmlByXPath", WithOutput<KvoXmlHelper>(&KvoXmlHelper::GetXmlByXPath),
           py::arg("sXPath"))
      .def("GetElemAttribute", &KvoXmlHelper::GetElemAttribute, py::arg("sElemXPath"))
      .def("RemoveNodes", &KvoXmlHelper::RemoveNodes, py::arg("sXPath"));
}

}  // namespace veld_python
