#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "model/group_base.h"
#include "tests/model/make_groups.h"

namespace testing_support {

/// A group of floats that is neither of the library's two, and has no axes at first. What it says
/// of its type, and its reader, are the test's to choose.
class UnusualGroup final : public Sumara::CGroupBase<float> {
 public:
  explicit UnusualGroup(const std::string& path = "run.%01") : CGroupBase(DescriptionOf(path)) {}

  std::uint32_t GetDataType() const override { return statedType; }
  CIOBase& GetReader() const override { return reader ? *reader : CGroupBase::GetReader(); }

  std::uint32_t statedType = Sumara::kFloatCode;
  std::unique_ptr<CIOBase> reader;

 protected:
  std::shared_ptr<Sumara::ISeries> MakeSeries(const std::string& name,
                                              const std::string& quantity) override {
    return std::make_shared<Sumara::CSeries1D<float>>(name, quantity);
  }
};

}  // namespace testing_support
