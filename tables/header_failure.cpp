#include "tables/header_failure.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace Tabulon {
namespace {

struct FieldCode {
  std::int32_t code;
  std::string_view field;
};

constexpr FieldCode kFieldCodes[] = {
    {32, "AXITICK"},  {33, "STEP"},     {97, "ACCESS"},   {98, "FORMAT"},   {99, "CONTENT"},
    {100, "CONFIG"},  {101, "NDIMENS"}, {102, "GENLAB"},  {103, "NVARS"},   {104, "AXISLAB"},
    {105, "AXIUNIT"}, {106, "AXIMETH"}, {107, "AXIVAL"},  {108, "AXIVAL"},  {109, "AXITICK"},
    {110, "AXITICK"}, {111, "MIN"},     {112, "STEP"},    {113, "VARIAB"},  {114, "VARIAB"},
    {115, "VARUNIT"}, {116, "VARUNIT"}, {117, "VARUNIT"}, {118, "DIMENS"},  {119, "ULOADS"},
    {120, "MAXTIME"}, {121, "MINTIME"}, {122, "MEAN"},    {125, "MAXTIME"}, {126, "DIMENS"},
    {127, "FORMAT"},  {128, "NDIMENS"}, {129, "AXIMETH"}, {130, "DIMENS"},
};

constexpr std::string_view kAxisFields[] = {"AXISLAB", "AXIUNIT", "AXIMETH", "AXITICK",
                                            "AXIVAL",  "MIN",     "STEP"};

bool IsAxisField(std::string_view field) {
  return std::find(std::begin(kAxisFields), std::end(kAxisFields), field) != std::end(kAxisFields);
}

/// The value of the first line with that label, or behind the start of an axis block.
std::string ValueInHeader(Sumara::CHeaderReader& header, const std::string& field, int axis) {
  std::string value;
  try {
    header.Rewind();
    if (IsAxisField(field)) {
      for (int block = 0; block < axis; ++block) header.SeekLabel("AXISLAB", value, {});
      header.SkipToLabel("AXISLAB");
    }
    header.SeekLabel(field, value, {});
  } catch (const CExceptionBase&) {
    value.clear();
  }
  return value;
}

}  // namespace

std::string FieldOfFailure(const CExceptionBase& failure) {
  const auto* const found =
      std::find_if(std::begin(kFieldCodes), std::end(kFieldCodes),
                   [&](const FieldCode& field) { return field.code == failure.ErrorCode(); });
  if (found != std::end(kFieldCodes)) return std::string(found->field);
  // The fields FILE, ACCESS, FORM and RECL leave the failure of the search, which names them.
  constexpr std::string_view kSought = "label sought = ";
  const std::string text = failure.Text();
  const std::size_t at = text.find(kSought);
  if (at == std::string::npos) return {};
  const std::size_t start = at + kSought.size();
  return text.substr(start, text.find(';', start) - start);
}

TableError HeaderFailure(Sumara::CHeaderReader& header, const CExceptionBase& failure, int axis) {
  std::string field = FieldOfFailure(failure);
  std::string found;
  if (!field.empty() && header.IsOpen()) found = ValueInHeader(header, field, axis);
  return TableError::Of(failure, header.GetPath(), std::move(field), std::move(found));
}

}  // namespace Tabulon
