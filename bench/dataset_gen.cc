// Writes a dataset file for the dataset benchmarks:
//   bench_dataset_gen FILE ROWS
// One data element with ROWS rows of 8 cols. Col "code" holds a unique value
// per row (K0000001, ...), col "kind" one of four values (F0..F3), the other
// cols short texts and numbers.
#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s FILE ROWS\n", argv[0]);
    return 2;
  }
  long rows = std::atol(argv[2]);
  std::FILE* out = std::fopen(argv[1], "wb");
  if (out == nullptr) return 1;
  std::fputs("<dataset><data guid=\"5E8F2A4C9B7D4E1FA3C6B0D2E4F6A8C0\">", out);
  for (long i = 1; i <= rows; ++i) {
    std::fprintf(
        out,
        "<row guid=\"%032lX\"><col name=\"code\" value=\"K%07ld\"/>"
        "<col name=\"kind\" value=\"F%ld\"/><col name=\"title\" value=\"Item number %ld\"/>"
        "<col name=\"qty\" value=\"%ld\"/><col name=\"price\" value=\"%ld.%02ld\"/>"
        "<col name=\"date\" value=\"2024-%02ld-%02ld\"/><col name=\"flag\" value=\"%s\"/>"
        "<col name=\"note\" value=\"n%ld\"/></row>",
        i, i, i % 4, i, i % 97, i % 1000, i % 100, i % 12 + 1, i % 28 + 1,
        (i % 2) != 0 ? "True" : "False", i % 7);
  }
  std::fputs("</data></dataset>", out);
  return std::fclose(out) == 0 ? 0 : 1;
}
