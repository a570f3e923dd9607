// One phase of the dataset benchmark per process, so that each phase starts
// from a settled heap and its peak memory is its own:
//   bench_dataset_phase PHASE FILE
// Prints "PHASE cpu_seconds calls peak_kib". Phases:
//   raw_read_file     xmlReadFile with the options the library uses
//   raw_read_memory   xmlReadMemory of the file's bytes, same options
//   parse_file        KvoDatasetO::ParseFile
//   parse             KvoDatasetO::Parse of the file's bytes
//   parse_positional  KvoDataset::Parse of the file's bytes
//   by_index          KvoDatasetO::GetDataRowByIndex for rows 1..N
//   positional        KvoDataset::GetDataRow for rows 1..N
//   by_id             KvoDatasetO::GetDataRow for every row ID
//   serialize_only    the baseline of the three above: each row written out
//                     with xmlNodeDump, reached by walking the tree
//   delete_read_positional  KvoDataset: DeleteDataRow at a random position,
//                     then GetDataRow at another, for half the rows
//   delete_read_by_id KvoDatasetO: DeleteDataRow of a random row ID, then
//                     GetDataRowByIndex at a random position, as often
//   keycol_unique     GetDataRowIDArrayByKeyCol on a unique value (x20)
//   keycol_frequent   GetDataRowIDArrayByKeyCol on a value of a quarter of
//                     the rows (x20)
//   new_guids         NewGuidText once per row: the part of Parse that every
//                     row's new ID costs
//   xpath_keycol      the baseline of the two above: libxml2's XPath
//                     "row[col[@name='kind' and @value='F1']]" on the data
//                     element of a raw parse (x20)
// The reading phases report the time of the reads alone.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xpath.h>

#include "foundation/this_utils.h"
#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_o.h"

#include "process_stats.h"

namespace {

// Process CPU time: the machines the benchmark runs on are shared, and CPU
// time is far steadier than wall time there. Parsing and reading are
// single-threaded and do no I/O beyond reading the file.
struct Clock {
  using time_point = double;
  static double now() { return veld_bench::Seconds(CLOCK_PROCESS_CPUTIME_ID); }
};

using veld_bench::PeakKib;

std::string ReadAll(const char* path) {
  std::ifstream in(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void Report(const char* phase, Clock::time_point start, long calls) {
  double seconds = Clock::now() - start;
  std::printf("%s %.6f %ld %ld\n", phase, seconds, calls, PeakKib());
}

constexpr int kRawOptions = XML_PARSE_NONET;

// Parses the file's bytes into `ds` and frees them; `id` is the first data
// element's ID. Returns its row count, or -1 when the parse fails.
template <class Dataset>
int32_t ParsedOnce(Dataset& ds, std::string& bytes, std::string& id) {
  if (!ds.Parse(bytes)) return -1;
  bytes.clear();
  bytes.shrink_to_fit();
  ds.GetDataID(1, id);
  return ds.GetDataRowCount(id);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s PHASE FILE\n", argv[0]);
    return 2;
  }
  const std::string phase = argv[1];
  const char* file = argv[2];
  xmlInitParser();

  if (phase == "raw_read_file") {
    auto start = Clock::now();
    xmlDocPtr doc = xmlReadFile(file, nullptr, kRawOptions);
    Report(argv[1], start, 1);
    xmlFreeDoc(doc);
    return doc != nullptr ? 0 : 1;
  }
  if (phase == "raw_read_memory") {
    std::string bytes = ReadAll(file);
    auto start = Clock::now();
    xmlDocPtr doc = xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                                  kRawOptions | XML_PARSE_IGNORE_ENC);
    Report(argv[1], start, 1);
    xmlFreeDoc(doc);
    return doc != nullptr ? 0 : 1;
  }
  if (phase == "parse_file") {
    veld::KvoDatasetO ds;
    auto start = Clock::now();
    bool ok = ds.ParseFile(file);
    Report(argv[1], start, 1);
    return ok ? 0 : 1;
  }
  if (phase == "parse" || phase == "parse_positional") {
    std::string bytes = ReadAll(file);
    auto start = Clock::now();
    bool ok;
    if (phase == "parse") {
      veld::KvoDatasetO ds;
      ok = ds.Parse(bytes);
      Report(argv[1], start, 1);
    } else {
      veld::KvoDataset ds;
      ok = ds.Parse(bytes);
      Report(argv[1], start, 1);
    }
    return ok ? 0 : 1;
  }
  if (phase == "new_guids") {
    long rows = 0;
    {
      xmlDocPtr doc = xmlReadFile(file, nullptr, kRawOptions | XML_PARSE_NOBLANKS);
      for (xmlNodePtr row = xmlDocGetRootElement(doc)->children->children; row != nullptr;
           row = row->next) {
        ++rows;
      }
      xmlFreeDoc(doc);
    }
    size_t total = 0;
    auto start = Clock::now();
    for (long i = 0; i < rows; ++i)
      total += veld::NewGuidText(veld::Kvo_GUID_FORMAT_PUREDATA).size();
    Report(argv[1], start, rows);
    return total > 0 ? 0 : 1;
  }
  if (phase == "xpath_keycol") {
    xmlDocPtr doc = xmlReadFile(file, nullptr, kRawOptions | XML_PARSE_NOBLANKS);
    xmlXPathContextPtr ctxt = xmlXPathNewContext(doc);
    ctxt->node = xmlDocGetRootElement(doc)->children;
    long found = 0;
    auto start = Clock::now();
    for (int i = 0; i < 20; ++i) {
      xmlXPathObjectPtr result = xmlXPathEvalExpression(
          reinterpret_cast<const xmlChar*>("row[col[@name='kind' and @value='F1']]"), ctxt);
      if (result != nullptr && result->nodesetval != nullptr) found += result->nodesetval->nodeNr;
      xmlXPathFreeObject(result);
    }
    Report(argv[1], start, 20);
    xmlXPathFreeContext(ctxt);
    xmlFreeDoc(doc);
    return found > 0 ? 0 : 1;
  }
  if (phase == "serialize_only") {
    xmlDocPtr doc = xmlReadFile(file, nullptr, kRawOptions | XML_PARSE_NOBLANKS);
    xmlNodePtr data = xmlDocGetRootElement(doc)->children;
    long calls = 0;
    size_t total = 0;
    auto start = Clock::now();
    xmlBufferPtr buffer = xmlBufferCreate();
    for (xmlNodePtr row = data->children; row != nullptr; row = row->next) {
      xmlBufferEmpty(buffer);
      xmlNodeDump(buffer, doc, row, 0, 0);
      std::string text(reinterpret_cast<const char*>(xmlBufferContent(buffer)),
                       static_cast<size_t>(xmlBufferLength(buffer)));
      total += text.size();
      ++calls;
    }
    Report(argv[1], start, calls);
    xmlBufferFree(buffer);
    xmlFreeDoc(doc);
    return total > 0 ? 0 : 1;
  }
  std::string bytes = ReadAll(file);
  if (phase == "delete_read_positional") {
    // Alternating: delete the row at a random position, read the row at
    // another; both calls counted.
    veld::KvoDataset ds;
    std::string id;
    int32_t count = ParsedOnce(ds, bytes, id);
    if (count < 0) return 1;
    const int32_t pairs = count / 2;
    std::mt19937 random(7);
    std::string row;
    size_t total = 0;
    auto start = Clock::now();
    for (int32_t i = 0; i < pairs; ++i) {
      if (!ds.DeleteDataRow(id, 1 + static_cast<int32_t>(random() % count))) return 1;
      --count;
      if (!ds.GetDataRow(id, 1 + static_cast<int32_t>(random() % count), row)) return 1;
      total += row.size();
    }
    Report(argv[1], start, 2L * pairs);
    return total > 0 ? 0 : 1;
  }
  if (phase == "positional") {
    veld::KvoDataset ds;
    std::string id;
    const int32_t count = ParsedOnce(ds, bytes, id);
    if (count < 0) return 1;
    std::string row;
    size_t total = 0;
    auto start = Clock::now();
    for (int32_t i = 1; i <= count; ++i) {
      if (!ds.GetDataRow(id, i, row)) return 1;
      total += row.size();
    }
    Report(argv[1], start, count);
    return total > 0 ? 0 : 1;
  }
  veld::KvoDatasetO ds;
  std::string id;
  const int32_t count = ParsedOnce(ds, bytes, id);
  if (count < 0) return 1;
  std::string row;
  size_t total = 0;
  if (phase == "by_index") {
    auto start = Clock::now();
    for (int32_t i = 1; i <= count; ++i) {
      if (!ds.GetDataRowByIndex(id, i, row)) return 1;
      total += row.size();
    }
    Report(argv[1], start, count);
  } else if (phase == "by_id") {
    std::vector<std::string> ids(static_cast<size_t>(count));
    for (int32_t i = 1; i <= count; ++i) ds.GetDataRowID(id, i, ids[static_cast<size_t>(i) - 1]);
    auto start = Clock::now();
    for (const std::string& row_id : ids) {
      if (!ds.GetDataRow(id, row_id, row)) return 1;
      total += row.size();
    }
    Report(argv[1], start, count);
  } else if (phase == "delete_read_by_id") {
    // Alternating: delete a random row by its ID, read the row at a random
    // position by index; both calls counted.
    std::vector<std::string> ids(static_cast<size_t>(count));
    for (int32_t i = 1; i <= count; ++i) ds.GetDataRowID(id, i, ids[static_cast<size_t>(i) - 1]);
    std::shuffle(ids.begin(), ids.end(), std::mt19937(7));
    const int32_t pairs = count / 2;
    std::mt19937 random(11);
    int32_t left = count;
    auto start = Clock::now();
    for (int32_t i = 0; i < pairs; ++i) {
      if (!ds.DeleteDataRow(id, ids[static_cast<size_t>(i)])) return 1;
      --left;
      if (!ds.GetDataRowByIndex(id, 1 + static_cast<int32_t>(random() % left), row)) return 1;
      total += row.size();
    }
    Report(argv[1], start, 2L * pairs);
  } else if (phase == "keycol_unique" || phase == "keycol_frequent") {
    const bool unique = phase == "keycol_unique";
    std::vector<std::string> found;
    auto start = Clock::now();
    for (int i = 0; i < 20; ++i) {
      int32_t n = unique ? ds.GetDataRowIDArrayByKeyCol(id, "code", "K0000007", found)
                         : ds.GetDataRowIDArrayByKeyCol(id, "kind", "F1", found);
      total += static_cast<size_t>(n);
    }
    Report(argv[1], start, 20);
  } else {
    std::fprintf(stderr, "unknown phase %s\n", argv[1]);
    return 2;
  }
  return total > 0 ? 0 : 1;
}
