#pragma once

namespace Binding {

/// Makes NumPy's functions known, on each use: the module loads and works without NumPy.
/// \throws ErrorAlreadySet after the reason was printed
void ImportNumPy();

}  // namespace Binding
