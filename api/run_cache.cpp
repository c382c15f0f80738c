#include "api/run_cache.h"

#include "api/run.h"
#include "core/text.h"

namespace SumaraApi {

std::size_t RunCache::Hash::operator()(std::string_view path) const {
  return Sumara::HashNoCase{}(path);
}

std::size_t RunCache::Hash::operator()(const RunPtr& run) const {
  return (*this)(run->TerminationFilePath());
}

bool RunCache::Equal::operator()(const RunPtr& a, std::string_view b) const {
  return Sumara::EqualsNoCase(a->TerminationFilePath(), b);
}

bool RunCache::Equal::operator()(const RunPtr& a, const RunPtr& b) const {
  return (*this)(a, b->TerminationFilePath());
}

RunCache::Runs& RunCache::InOrder() {
  if (m_added.empty()) return m_runs;
  Runs added;  // aside: memory may end amid the runs
  added.reserve(m_added.size());
  for (auto run = m_added.rbegin(); run != m_added.rend(); ++run) added.insert(*run);
  m_runs.reserve(m_runs.size() + added.size());  // what follows cannot fail
  m_added = {};
  m_runs.merge(added);
  for (const RunPtr& run : added) m_runs.erase(run);
  m_runs.merge(added);
  return m_runs;
}

RunPtr RunCache::Find(std::string_view path) {
  const Runs& runs = InOrder();
  const auto found = runs.find(path);
  return found == runs.end() ? nullptr : *found;
}

RunPtr RunCache::Add(const RunPtr& run) { return *InOrder().insert(run).first; }

void RunCache::Replace(const std::vector<RunPtr>& runs) {
  m_added.insert(m_added.end(), runs.begin(), runs.end());
}

void RunCache::Remove(std::string_view path) {
  Runs& runs = InOrder();
  const auto found = runs.find(path);
  if (found != runs.end()) runs.erase(found);
}

void RunCache::Clear() {
  m_runs.clear();
  m_added = {};
}

void RunCache::ReleaseReaders() {
  for (const RunPtr& run : InOrder()) run->ReleaseReaders();
}

}  // namespace SumaraApi
