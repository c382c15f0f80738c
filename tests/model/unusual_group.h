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
  bool IsSymmetric() const override { return true; }

  std::uint32_t statedType = Sumara::kFloatCode;
  std::unique_ptr<CIOBase> reader;

 protected:
  std::uint64_t CountOfSecondary() const override { return 1; }
  std::shared_ptr<Sumara::ISeries> MakeSeries(const std::string& name,
                                              const std::string& quantity) override {
    return std::make_shared<Sumara::CSeries1D<float>>(name, quantity);
  }
  bool IsVectorLoaded(const Sumara::ISeries& series, std::uint64_t) const override {
    return series.IsLoaded() == 1;
  }
  std::vector<float>& VectorToFill(Sumara::ISeries& series, std::uint64_t) override {
    return static_cast<Sumara::CSeries1D<float>&>(series).Data();
  }
  void MarkFilled(Sumara::ISeries& series, std::uint64_t) override {
    series.SetLoadState(Sumara::LoadState::kLoaded);
  }
};

}  // namespace testing_support
