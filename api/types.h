#pragma once

#include <memory>

#include "vocabulary/enumerations.h"

// The names that the classes of the public interface share: the enumerations, and the shared
// pointers to its classes.

namespace SumaraApi {

class Run;
class Group;
class IndependentVariable;
class Variable;
template <class T>
class Variable1D;
template <class T>
class Variable2D;

using RunPtr = std::shared_ptr<Run>;
using GroupPtr = std::shared_ptr<Group>;
using VariablePtr = std::shared_ptr<Variable>;
using IndependentVariablePtr = std::shared_ptr<IndependentVariable>;
template <class T>
using Variable1DPtr = std::shared_ptr<Variable1D<T>>;
template <class T>
using Variable2DPtr = std::shared_ptr<Variable2D<T>>;
using Variable1DPtr_Float32 = Variable1DPtr<float>;
using Variable1DPtr_Float64 = Variable1DPtr<double>;
using Variable1DPtr_Int32 = Variable1DPtr<int>;
using Variable2DPtr_Float32 = Variable2DPtr<float>;
using Variable2DPtr_Float64 = Variable2DPtr<double>;
using Variable2DPtr_Int32 = Variable2DPtr<int>;

}  // namespace SumaraApi

/// Names the three element types of the public classes for lists of explicit instantiations: X(T).
#define TABULON_FOR_EACH_PUBLIC_TYPE(X) X(float) X(double) X(int)
