#!/usr/bin/env bash
# Installs the Debian packages ovui needs to build, test and benchmark;
# `install-deps.sh fuzz` adds clang and its libFuzzer runtime.
# Idempotent and silent when everything is already present.
set -euo pipefail

packages=(
  g++ make cmake ninja-build pkg-config
  qtbase5-dev libqt5charts5-dev qttools5-dev-tools qttools5-dev
  libgtest-dev libbenchmark-dev
)
[[ "${1:-}" == fuzz ]] && packages+=(clang libclang-rt-dev)

missing=()
for p in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
  [[ "$status" == "install ok installed" ]] || missing+=("$p")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

echo "install-deps: installing ${missing[*]}"
sudo=()
if [[ $(id -u) -ne 0 ]]; then
  command -v sudo >/dev/null || { echo "install-deps: need root or sudo to install ${missing[*]}" >&2; exit 1; }
  sudo=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq "${missing[@]}" >/dev/null
