// The whole public interface of the Veld Common Utility Library in one
// include. Every header under include/veld/ is listed here; the test
// headers.umbrella_complete fails when one is missing, so add new public
// headers to this list in their layer's group.
#ifndef VELD_VELD_H_
#define VELD_VELD_H_

#include "veld/export.h"

// runtime: Variant, raised errors, the keyed collection, case folding.
#include "veld/runtime/automation_error.h"
#include "veld/runtime/case_folding.h"
#include "veld/runtime/format.h"
#include "veld/runtime/keyed_collection.h"
#include "veld/runtime/variant.h"

// platform: everything that differs by operating system or host.
#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"

// xml: the DOM and XPath over the library's XML documents.
#include "veld/xml/xml_document.h"
#include "veld/xml/xml_node.h"
#include "veld/xml/xml_node_list.h"
#include "veld/xml/xml_parse_error.h"
#include "veld/xml/xsl_template.h"

// foundation: the error record, the worker frame, GUID and hex texts.
#include "veld/foundation/kvo_enums.h"
#include "veld/foundation/kvo_err_object.h"
#include "veld/foundation/kvo_utils.h"
#include "veld/foundation/worker_frame.h"

// items: the name/value item collection and its XML form.
#include "veld/items/kvo_general_item.h"
#include "veld/items/kvo_general_items.h"

// tablestore: the databases that data elements are exported to.
#include "veld/tablestore/table_store.h"

// options: the option store.
#include "veld/options/kvo_option.h"

// registry: registry access and its backends.
#include "veld/registry/kvo_registry.h"
#include "veld/registry/registry_backend.h"

// datasets: the dataset classes.
#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_base.h"
#include "veld/datasets/kvo_dataset_o.h"

// xmlhelper: the XML document helper and the progress notifier.
#include "veld/xmlhelper/connection.h"
#include "veld/xmlhelper/kvo_progress_updater.h"
#include "veld/xmlhelper/kvo_xml_helper.h"
#include "veld/controls/control.h"
#include "veld/controls/list_view.h"
#include "veld/controls/image_combo.h"
#include "veld/controls/tree_view.h"
#include "veld/controls/control_observer.h"
#include "veld/controls/headless_list_view.h"
#include "veld/controls/headless_image_combo.h"
#include "veld/controls/headless_tree_view.h"
#include "veld/controls/kvo_data_ctrl_helper.h"

#endif  // VELD_VELD_H_
