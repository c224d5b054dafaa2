#!/usr/bin/env bash
# The portable core never includes a platform header: everything that touches
# the operating system is a port, implemented in src/mac or src/linux.
set -u
root=${1:?usage: check_core_headers.sh SOURCE_DIR}
pattern='#[[:space:]]*(include|import)[[:space:]]*<(AppKit|Cocoa|Foundation|CoreFoundation|IOKit|AVFoundation|Vision|CoreGraphics|CoreImage|CoreMedia|CoreMediaIO|Security|Network|dispatch|objc|linux|sys)/|#[[:space:]]*include[[:space:]]*<(unistd|fcntl|dlfcn|pthread)\.h>'
found=$(grep -rnE "$pattern" "$root"/src --include='*.h' --include='*.cpp' \
  | grep -vE "^$root/src/(mac|linux)/" || true)
if [ -n "$found" ]; then
  echo "platform headers in the core:"
  echo "$found"
  exit 1
fi
echo "no platform header in the core"
