#!/usr/bin/env bash
# The folders of src/ include each other only along the edges that
# folder_graph.txt allows, and the portable core never includes a platform
# header: everything that touches the operating system is a port,
# implemented in src/mac or src/linux.
set -u
root=${1:?usage: check_folder_graph.sh SOURCE_DIR}
graph="$root/cmake/folder_graph.txt"
status=0

declare -A allowed position
order=0
while IFS= read -r line; do
  line=${line%%#*}
  [[ $line =~ ^[[:space:]]*$ ]] && continue
  folder=${line%%:*}
  position[$folder]=$order
  for above in ${line#*:}; do
    if [ -z "${position[$above]+x}" ] || [ "${position[$above]}" -ge "$order" ]; then
      echo "folder_graph.txt: $folder may include $above, which is not listed above it"
      status=1
    fi
    allowed[$folder:$above]=1
  done
  order=$((order + 1))
done <"$graph"

for dir in "$root"/src/*/; do
  folder=$(basename "$dir")
  if [ -z "${position[$folder]+x}" ]; then
    echo "src/$folder is not in folder_graph.txt"
    status=1
    continue
  fi
  while IFS=: read -r file target; do
    [ "$target" = "$folder" ] && continue
    [ -n "${position[$target]+x}" ] || continue  # not one of ours
    if [ -z "${allowed[$folder:$target]+x}" ]; then
      echo "src/$folder may not include $target: ${file#"$root"/}"
      status=1
    fi
  done < <(grep -oE '#[[:space:]]*(include|import)[[:space:]]*"[A-Za-z0-9_]+/' \
             "$dir"*.h "$dir"*.cpp "$dir"*.mm 2>/dev/null |
           sed -E 's/:#[[:space:]]*(include|import)[[:space:]]*"/:/; s/\/$//' | sort -u)
done

platform='#[[:space:]]*(include|import)[[:space:]]*<(AppKit|Cocoa|Foundation|CoreFoundation|IOKit|AVFoundation|Vision|CoreGraphics|CoreImage|CoreMedia|CoreMediaIO|Security|Network|dispatch|objc|linux|sys)/|#[[:space:]]*include[[:space:]]*<(unistd|fcntl|dlfcn|pthread|sqlite3|seccomp|curl/curl)\.h>'
found=$(grep -rnE "$platform" "$root"/src --include='*.h' --include='*.cpp' |
  grep -vE "^$root/src/(mac|linux|posix)/" || true)
if [ -n "$found" ]; then
  echo "platform headers in the core:"
  echo "$found"
  status=1
fi
[ $status = 0 ] && echo "the folder graph holds, and the core includes no platform header"
exit $status
