# Tools and configuration of the native build; sourced after lib.sh.

# The interpreter whose headers and NumPy a native build uses: Debian's, unless another is given.
native_python() { echo "${TABULON_NATIVE_PYTHON:-/usr/bin/python3}"; }

# Installs what the build with Debian's packages needs and this machine lacks.
require_native_tools() {
  local missing=() python
  python="$(native_python)"
  cmake --version >/dev/null 2>&1 || missing+=(cmake)
  ninja --version >/dev/null 2>&1 || missing+=(ninja-build)
  swig -version >/dev/null 2>&1 || missing+=(swig)
  [ -x "$python" ] || missing+=(python3)
  "$python" -c 'import numpy' 2>/dev/null || missing+=(python3-numpy)
  "$python" -c 'import os, sysconfig
raise SystemExit(not os.path.exists(os.path.join(sysconfig.get_path("include"), "Python.h")))' \
    2>/dev/null || missing+=(python3-dev)
  [ -e /usr/include/gtest/gtest.h ] || missing+=(libgtest-dev)
  have ccache || missing+=(ccache)
  if [ ${#missing[@]} -gt 0 ]; then
    say "Installing what the native build needs"
    apt_install "${missing[@]}"
  fi
  version_at_least "$(cmake --version | sed -n 's/^cmake version //p')" 3.25 \
    || die "$(command -v cmake) is older than 3.25: install a newer CMake (pip install cmake)"
  case "$(swig -version | sed -n 's/^SWIG Version //p')" in
    4.1.*) ;;
    *) die "$(command -v swig) is not SWIG 4.1: install that release (pip install 'swig>=4.1,<4.2')" ;;
  esac
  use_ccache
}

# configure_native PRESET [CMAKE ARGUMENT...]
configure_native() {
  local preset="$1"
  shift
  cmake --preset "$preset" "-DPython_EXECUTABLE=$(native_python)" "$@" </dev/null
}
