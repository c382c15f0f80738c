# Shared by the scripts of this folder; sourced, with bash.
#
# Everything that a script makes stands under build/, so that removing that folder starts afresh.

set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)"
cd "$root"
build="$root/build"
mkdir -p "$build/log"

# Caches beside the build; a cache of the user's own is kept.
export CCACHE_DIR="${CCACHE_DIR:-$build/cache/ccache}"
# What lies in this tree is known by its place within it, so that two builds share what both compile.
export CCACHE_BASEDIR="${CCACHE_BASEDIR:-$root}"
export PYTHONPYCACHEPREFIX="$build/cache/pycache"
export HYPOTHESIS_STORAGE_DIRECTORY="$build/cache/hypothesis"
export PIP_DISABLE_PIP_VERSION_CHECK=1 PIP_NO_INPUT=1
# A development environment must not leak into ours.
unset PYTHONHOME PYTHONPATH CMAKE_PREFIX_PATH CMAKE_GENERATOR

jobs="${TABULON_JOBS:-$(nproc 2>/dev/null || echo 2)}"
export CMAKE_BUILD_PARALLEL_LEVEL="$jobs"

say() { printf '\n==> %s\n' "$*"; }
note() { printf '    %s\n' "$*"; }
die() {
  printf '\nerror: %s\n' "$*" >&2
  exit 1
}

have() { command -v "$1" >/dev/null 2>&1; }

# version_at_least HAVE WANTED
version_at_least() {
  [ "$(printf '%s\n%s\n' "$2" "$1" | sort -V | head -n 1)" = "$2" ]
}

# --- Debian packages -----------------------------------------------------------------------------

# The command that runs apt-get with the right to install, or nothing.
as_root() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  elif have sudo && { [ -t 0 ] || sudo -n true 2>/dev/null; }; then
    sudo "$@"
  else
    return 126
  fi
}

# apt_install PACKAGE... : installs what a check has found missing, or says what to install.
apt_install() {
  local log="$build/log/apt.log" status=0
  if ! have apt-get; then
    die "this machine lacks what Debian calls: $*. Install these with its own package manager."
  fi
  note "apt-get install $*"
  # The lists of a fresh machine may be missing or old.
  as_root apt-get -q -o DPkg::Lock::Timeout=300 update </dev/null >"$log" 2>&1 || status=$?
  if [ "$status" = 126 ]; then
    die "packages are missing, and this user may not install them. Run as root: apt-get install $*"
  fi
  as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-install-recommends \
    -o DPkg::Lock::Timeout=300 install "$@" </dev/null >>"$log" 2>&1 || {
    tail -n 20 "$log" >&2
    die "apt-get could not install: $* (see $log)"
  }
  hash -r
}

# --- Python --------------------------------------------------------------------------------------

# Whether a command is a CPython that we support. Looks are not enough: a version manager puts a
# stand-in on the path for versions that are not switched on.
python_works() {
  "$1" -c 'import sys; sys.exit(not (3, 10) <= sys.version_info[:2] <= (3, 13))' \
    >/dev/null 2>&1 </dev/null
}

# Prints the Python to use: $TABULON_PYTHON, else 3.10, the reference, else the newest present.
find_python() {
  local candidate version pyenv="${PYENV_ROOT:-$HOME/.pyenv}/versions"
  if [ -n "${TABULON_PYTHON:-}" ]; then
    python_works "$TABULON_PYTHON" || return 1
    command -v "$TABULON_PYTHON"
    return
  fi
  for version in 3.10 3.13 3.12 3.11; do
    for candidate in "python$version" "$pyenv/$version".*/bin/"python$version"; do
      if python_works "$candidate"; then
        command -v "$candidate"
        return
      fi
    done
  done
  for candidate in python3 python; do
    if python_works "$candidate"; then
      command -v "$candidate"
      return
    fi
  done
  return 1
}

# Sets $python, and installs what Debian splits off from it.
require_python() {
  python="$(find_python)" || {
    [ -z "${TABULON_PYTHON:-}" ] || die "TABULON_PYTHON=$TABULON_PYTHON is no CPython 3.10 to 3.13"
    apt_install python3 python3-venv python3-dev
    python="$(find_python)" || die "no CPython 3.10 to 3.13 was found"
  }
  python_version="$("$python" -c 'import sys; print("%d.%d" % sys.version_info[:2])')"
  local missing=()
  "$python" -c 'import ensurepip, venv' 2>/dev/null || missing+=("python$python_version-venv")
  "$python" -c 'import os, sysconfig
raise SystemExit(not os.path.exists(os.path.join(sysconfig.get_path("include"), "Python.h")))' \
    || missing+=("python$python_version-dev")
  [ ${#missing[@]} = 0 ] || apt_install "${missing[@]}"
}

# Whether the C++ compiler takes C++20; installs one if there is none. All builds call it by one name, by
# which the compiler's cache knows it.
require_compiler() {
  local probe="$build/log/probe.cpp"
  export CXX="${CXX:-c++}"
  have "$CXX" || apt_install g++
  echo '#include <span>' >"$probe"
  "$CXX" -std=c++20 -fsyntax-only "$probe" 2>/dev/null \
    || die "$CXX does not take C++20: GCC 11, Clang 14 or later is needed (set CXX)"
}

use_ccache() {
  if have ccache; then
    export CMAKE_CXX_COMPILER_LAUNCHER="${CMAKE_CXX_COMPILER_LAUNCHER:-ccache}"
  fi
}

# Sets $venv to a virtual environment of $python under build/; a broken one is made anew.
require_venv() {
  venv="$build/venv-$python_version"
  if ! "$venv/bin/python" -m pip --version >/dev/null 2>&1; then
    say "Making a virtual environment with Python $python_version: ${venv#"$root"/}"
    rm -rf "$venv"
    "$python" -m venv "$venv"
  fi
}

# pip_quietly ARGUMENT... : pip of $venv, its output kept in a log and shown if it fails.
pip_quietly() {
  local log="$build/log/pip.log"
  "$venv/bin/python" -m pip "$@" </dev/null >"$log" 2>&1 || {
    tail -n 60 "$log" >&2
    die "pip $* failed (see ${log#"$root"/})"
  }
}

# What the package is built with: requirements, a line each.
build_requirements() { sed -n '/^requires = \[/,/^\]/s/^ *"\([^"]*\)".*/\1/p' pyproject.toml; }

# Puts the tools that build the package into $venv, and in front of others of this machine. Builds that
# use them find the same headers in the same places, and the compiler's cache serves the second one.
use_build_tools() {
  local requirements
  mapfile -t requirements < <(build_requirements)
  # The stub of the tables' module is held to this release.
  requirements+=("$(sed -n 's/.*"\(nanobind==[0-9.]*\)".*/\1/p' pyproject.toml)")
  pip_quietly install "${requirements[@]}"
  export PATH="$venv/bin:$PATH"
  hash -r
}

# Whether anything that the package is made of is newer than the file STAMP.
sources_changed_since() {
  [ ! -e "$1" ] || [ -n "$(find CMakeLists.txt pyproject.toml README.md LICENSE cmake core groupfiles \
    vocabulary tables model api binding python examples/runs -newer "$1" -not -name '*.pyc' -print -quit)" ]
}

# install_package EXTRAS : `pip install .[EXTRAS]` into $venv, unless that has been done.
install_package() {
  local stamp="$venv/installed" begin
  if sources_changed_since "$stamp"; then
    use_ccache
    say "pip install .[$1] (compiles the extension module, which takes minutes)"
    use_build_tools
    begin="$(mktemp "$venv/installing.XXXXXX")"
    rm -f "$stamp"
    # Compiled with the arguments of a native build.
    pip_quietly install --no-deps --no-build-isolation \
      --config-settings=build-dir="$build/package-$python_version" \
      --config-settings=cmake.define.TABULON_WERROR=ON .
    # The time before the build: what was edited meanwhile counts as changed.
    mv "$begin" "$stamp"
  else
    say "tabulon is installed in ${venv#"$root"/} as the sources stand"
  fi
  # Satisfied by what is installed, but for what it needs and another script had no use for.
  pip_quietly install "tabulon[$1]"
}

# --- Checks ---------------------------------------------------------------------------------------

failed=()
# step NAME COMMAND... : runs a check; the others go on if it fails, the script does not succeed.
step() {
  local name="$1" begin=$SECONDS
  shift
  say "$name"
  if "$@"; then
    note "$name: passed in $((SECONDS - begin)) s"
  else
    failed+=("$name")
    note "$name: FAILED after $((SECONDS - begin)) s"
  fi
}

# finish WORDS : says how the steps went, and exits.
finish() {
  if [ ${#failed[@]} -gt 0 ]; then
    say "FAILED:"
    printf '      %s\n' "${failed[@]}"
    exit 1
  fi
  say "$1"
  exit 0
}
