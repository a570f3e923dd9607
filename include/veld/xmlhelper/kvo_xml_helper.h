// KvoXmlHelper: holds one XML document for the caller and offers a few
// operations on it: loading it from text or a file, transforming it with an
// XSL style sheet (into the caller's document, into text, into a file, or in
// place), reading the XML of the first node an XPath selects, listing an
// element's attributes, and removing the nodes an XPath selects.
//
// It is a worker class (see WorkerFrame): no member raises. Every member but
// Reset clears the last error on entry; a failure is recorded, with number -1
// and a fixed message for the class's own checks or with the XML library's
// number and description otherwise (errnum::kXmlFailure for a bad XPath, a
// style sheet that does not compile, or a failed or refused transform; the
// file error numbers of XmlDocument::Save for a failed save), and the member
// returns false (nullptr for GetElemAttribute). Read it with GetLastError or
// raise it with RaiseLastError. Reset does not touch the record.
//
// Transforms use XslTemplate and are confined as it says: a style sheet cannot
// write files, create directories or reach the network, and reads other local
// documents through document() only when the current Platform allows it. The
// style sheet file is loaded as XmlDocument::Load loads, so external entities
// and DTDs are never resolved.
//
// Output method of the style sheet (xsl:output method):
//  - "xml" (or none): the result tree as a document; text members give its
//    Xml(), the file member saves it as XmlDocument::Save does (UTF-8, no
//    declaration, no indentation; indent, encoding and doctype settings of
//    xsl:output are not applied);
//  - "html": the same, the result tree being kept as an XML document (empty
//    elements as <br/>, no HTML serialisation rules);
//  - "text": TransformDataToXml gives the text the style sheet produced and
//    TransformDataToXmlFile writes it (UTF-8); TransformDataToXmlDomDoc and
//    TransformData fail, since text is not a document, and change nothing.
#ifndef VELD_XMLHELPER_KVO_XML_HELPER_H_
#define VELD_XMLHELPER_KVO_XML_HELPER_H_

#include <memory>
#include <string>

#include "veld/export.h"
#include "veld/foundation/worker_frame.h"
#include "veld/items/kvo_general_items.h"
#include "veld/xml/xml_document.h"

namespace veld {

class VELD_EXPORT KvoXmlHelper : public DocumentFrame {
 public:
  // The held document starts empty (no root element).
  KvoXmlHelper();
  ~KvoXmlHelper();

  // RaiseLastError, GetLastError and Reset come from the frame; Reset
  // replaces the held document with a new empty one and leaves the record.

  // Parses `sDataXml` into the held document. On failure records "Failed to
  // load xml data." and returns false; the held document is then empty.
  bool LoadXml(const std::string& sDataXml);

  // Loads the file `sXmlFile` into the held document. On failure records
  // "Failed to load data from file - " + sXmlFile + "." and returns false; the
  // held document is then empty.
  bool LoadFile(const std::string& sXmlFile);

  // Transforms the held document (which is not changed) with the style sheet
  // in the file `sXslFile`; the result replaces the content of
  // `cTargetXmlDomDoc` (seen through every copy of that handle). Returns true
  // when the transform completed. When the style sheet file does not load,
  // records "Failed to load XSL file - " + the load's parse error reason +
  // "." and returns false. On every failure `cTargetXmlDomDoc` is unchanged.
  bool TransformDataToXmlDomDoc(const std::string& sXslFile, XmlDocument& cTargetXmlDomDoc);

  // As TransformDataToXmlDomDoc into a new document, and sets `sTargetXml` to
  // that document's text (for the output method "text", to the text
  // produced). On failure returns false and leaves `sTargetXml` unchanged.
  bool TransformDataToXml(const std::string& sXslFile, std::string& sTargetXml);

  // As TransformDataToXmlDomDoc into a new document, which then becomes the
  // held document. On failure returns false and the held document is
  // unchanged.
  bool TransformData(const std::string& sXslFile);

  // As TransformDataToXml, and saves the result to the file `sTargetXmlFile`,
  // replacing it. On failure returns false; when the transform fails no file
  // is written.
  bool TransformDataToXmlFile(const std::string& sXslFile, const std::string& sTargetXmlFile);

  // Sets `sXml` to "", then to the XML text of the first node (with its
  // subtree) that `sXPath`, trimmed of blanks, selects in the held document.
  // Returns true whether or not a node was selected; false only on a failure
  // such as an invalid XPath (then `sXml` is "").
  bool GetXmlByXPath(const std::string& sXPath, std::string& sXml);

  // A new collection, owned by the caller, with one unkeyed item per attribute
  // of the first node `sElemXPath` (not trimmed) selects, in document order:
  // Name the attribute's name, Value its value, TypeString and ExtraValue "".
  // Namespace declarations are not attributes here. An element without
  // attributes gives an empty collection; nullptr when nothing is selected,
  // when the node is not an element, or on a failure (recorded).
  std::shared_ptr<KvoGeneralItems> GetElemAttribute(const std::string& sElemXPath);

  // Removes every node that `sXPath`, trimmed of blanks, selects in the held
  // document, each from its parent, in document order. Returns true, also
  // when nothing is selected. A selected node that cannot be removed (an
  // attribute, the document node) fails the call with
  // "The node is not a child of this node." (errnum::kXmlFailure); the nodes
  // before it stay removed.
  bool RemoveNodes(const std::string& sXPath);
};

}  // namespace veld

#endif  // VELD_XMLHELPER_KVO_XML_HELPER_H_
