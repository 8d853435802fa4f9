#!/usr/bin/env bash
# Makes the Android package (AAR) of the library: classes, native libraries, and headers for an app's own C++ (prefab).
#
#   bash scripts/android_package.sh [--ndk FOLDER] [--libraries FOLDER] [--abis "ABI ..."] [--output FOLDER]
#
#   --ndk FOLDER        the NDK, r25 or newer, that builds the libraries; without this option and --libraries
#                       ANDROID_NDK, ANDROID_NDK_HOME or ANDROID_NDK_ROOT names it
#   --libraries FOLDER  takes FOLDER/ABI/libVLVKMakeupEngine.so, which an NDK has linked elsewhere, with their symbols
#   --abis "ABI ..."    some of arm64-v8a armeabi-v7a x86_64; without this option all, or those that are in the folder
#   --help              prints this
#   --output FOLDER     where the two archives go, out without this option:
#
#     VLVKMakeupEngine-VERSION.aar                        what an app takes in, libraries stripped
#     VLVKMakeupEngine-VERSION-native-debug-symbols.zip   ABI/libVLVKMakeupEngine.so as linked, for crash consoles
#
# The same libraries and classes give the same bytes. Needs CMake and a JDK for the classes, zip and unzip, llvm-objcopy and
# llvm-readelf (an NDK has both); `bash scripts/setup.sh android` installs them on Debian.
set -euo pipefail
called_from=$PWD
script=$(realpath "$0")
cd "$(dirname "$0")/.."
. scripts/quietly.sh
export CMAKE_BUILD_PARALLEL_LEVEL="${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}" LC_ALL=C TZ=UTC

name=VLVKMakeupEngine
file=lib$name.so
known_abis="arm64-v8a armeabi-v7a x86_64"
builds=build-android-package

fail() {
  echo "android_package.sh: $*" >&2
  exit 1
}

# What was given is relative to where the script was called.
from_caller() { case "$1" in /*) echo "$1" ;; *) echo "$called_from/$1" ;; esac; }

help() { sed -n '/^#!/d; /^#/!q; s/^# \{0,1\}//p' "$script"; }

read_options() {
  ndk='' ndk_option='' libraries='' abis='' output=$PWD/out
  while [ $# -gt 0 ]; do
    if [ "$1" = --help ]; then
      help
      exit
    fi
    [ $# -gt 1 ] || fail "$1 takes a value, or is not an option; --help lists them"
    case "$1" in
      --ndk) ndk=$(from_caller "$2") ndk_option=--ndk ;;
      --libraries) libraries=$(from_caller "$2") ;;
      --abis) abis=$2 ;;
      --output) output=$(from_caller "$2") ;;
      *) fail "no option '$1'; --help lists them" ;;
    esac
    shift 2
  done
  [ -n "$ndk$libraries" ] || find_ndk
  for abi in $abis; do
    [[ " $known_abis " == *" $abi "* ]] || fail "no ABI '$abi'; there are $known_abis"
  done
}

# The NDK that the environment names.
find_ndk() {
  for ndk_option in ANDROID_NDK ANDROID_NDK_HOME ANDROID_NDK_ROOT; do
    [ -z "${!ndk_option:-}" ] || break
  done
  ndk=${!ndk_option:-}
  [ -n "$ndk" ] || fail "no NDK and no libraries: give --ndk FOLDER (or ANDROID_NDK) or --libraries FOLDER"
  ndk=$(from_caller "$ndk")
}

find_tools() {
  toolchain=$ndk/build/cmake/android.toolchain.cmake
  [ -n "$libraries" ] || [ -f "$toolchain" ] ||
    fail "'$ndk' of $ndk_option is no NDK: it has no build/cmake/android.toolchain.cmake"
  [ -z "$libraries" ] || [ -d "$libraries" ] || fail "'$libraries' is not a folder"
  for folder in "$ndk"/toolchains/llvm/prebuilt/*/bin; do
    [ ! -d "$folder" ] || PATH=$folder:$PATH
  done
  [ -z "${JAVA_HOME:-}" ] || PATH=$JAVA_HOME/bin:$PATH
  for tool in cmake javac javap zip unzip llvm-readelf llvm-objcopy; do
    command -v "$tool" >/dev/null || fail "$tool is missing; 'bash scripts/setup.sh android' installs what is needed"
  done
}

build_classes() {
  quietly cmake -S . -B $builds/classes -DVLVK_BUILD_JAVA=ON -DVLVK_BUILD_TOOLS=OFF -DVLVK_BUILD_TESTS=OFF \
    -DVLVK_BUILD_BENCHMARKS=OFF
  quietly cmake --build $builds/classes --target vlvk_java
  version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' $builds/classes/CMakeCache.txt)
}

# From nothing, as the last build may have been another NDK's. Debug sections name the sources from the project's folder
# on, so that the place of the build does not matter.
build_libraries() {
  [ -z "$libraries" ] || return 0
  libraries=$PWD/$builds
  for abi in ${abis:=$known_abis}; do
    rm -rf "${builds:?}/$abi"
    quietly cmake -S . -B "$builds/$abi" "-DCMAKE_TOOLCHAIN_FILE=$toolchain" -DANDROID_ABI="$abi" \
      -DANDROID_PLATFORM=android-21 -DANDROID_STL=c++_static -DCMAKE_BUILD_TYPE=Release \
      "-DCMAKE_CXX_FLAGS=-g \"-ffile-prefix-map=$PWD=.\"" -DVLVK_BUILD_TOOLS=OFF -DVLVK_BUILD_TESTS=OFF \
      -DVLVK_BUILD_BENCHMARKS=OFF -DVLVK_BUILD_JAVA=OFF
    quietly cmake --build "$builds/$abi" --target $name
  done
}

choose_libraries() {
  if [ -z "$abis" ]; then
    for abi in $known_abis; do
      [ ! -e "$libraries/$abi/$file" ] || abis+="$abi "
    done
  fi
  [ -n "$abis" ] || fail "'$libraries' has no ABI/$file, ABI being one of $known_abis"
  for abi in $abis; do
    [ -f "$libraries/$abi/$file" ] || fail "'$libraries/$abi/$file' does not exist"
  done
}

# Classes without META-INF, which names the JDK; the keep rules that it has are the package's proguard.txt. The functions
# that Java finds by their names are listed in $work/entry_points; JNI_OnLoad registers those of Engine.
unpack_classes() {
  unzip -q $builds/classes/$name.jar -d "$work/classes" -x 'META-INF/*'
  echo JNI_OnLoad >"$work/entry_points"
  find "$work/classes" -name '*.class' ! -name Engine.class ! -name package-info.class -exec javap -private {} + |
    sed -nE 's/^(.* )?class ([A-Za-z0-9.]+) .*\{$/\2/;T method;h;b;:method;s/^.* native .* ([A-Za-z0-9]+)\(.*/\1/;T;G
      s/(.*)\n(.*)/Java.\2.\1/;s/\./_/g;p' >>"$work/entry_points"
}

# What the linker of an NDK notes in a library: its API level, 4 bytes, and the NDK's version, text.
read_note() {
  llvm-objcopy --dump-section=.note.android.ident="$work/note" "$1" "$work/unused" 2>/dev/null || return 1
  api=$(od -An -tu4 -j20 -N4 "$work/note" | tr -d ' ')
  ndk_version=$(tail -c +25 "$work/note" | tr '\0' '\n' | sed -n '1s/^r\([0-9]*\).*/\1/p')
  [ -n "$api" ] && [ -n "$ndk_version" ]
}

# Refuses a library that would fail in an app. Leaves api, ndk_version and stl, as prefab calls them.
check_library() {
  local abi=$1 library=$2 elf=$work/elf machine entry
  llvm-readelf -hldnSW --dyn-syms "$library" >"$elf" 2>/dev/null || fail "'$library' is not an ELF file"
  case "$abi" in
    arm64-v8a) machine='AArch64' ;;
    armeabi-v7a) machine='ARM' ;;
    x86_64) machine='Advanced Micro Devices X86-64' ;;
  esac
  grep -q "^ *Machine: *$machine\$" "$elf" ||
    fail "'$library' is for $(sed -n 's/^ *Machine: *//p' "$elf"), but must be for $machine"
  read_note "$library" || fail "'$library' has no note of an NDK's linker (.note.android.ident)"
  grep -qF "soname: [$file]" "$elf" || fail "'$library' must have the SONAME $file"
  grep -q 'Build ID: ' "$elf" || fail "'$library' has no build ID, by which crash consoles find its symbols"
  grep -q ' \.symtab ' "$elf" || fail "'$library' is stripped, but its symbols are packed too; give it as linked"
  [ "$abi" = armeabi-v7a ] || awk '$1 == "LOAD" && !/ 0x[0-9a-f]*[048c]000$/ {exit 1}' "$elf" ||
    fail "'$library' is not aligned to pages of 16 KiB (-Wl,-z,max-page-size=16384)"
  while read -r entry; do
    grep -qE "FUNC +GLOBAL +(DEFAULT|PROTECTED) +[0-9]+ $entry\$" "$elf" || fail "'$library' does not export $entry"
  done <"$work/entry_points"
  # A C++ runtime inside and hidden is no concern of an app; prefab then wants to hear of none.
  stl=none
  if grep -qF '[libc++_shared.so]' "$elf"; then stl=c++_shared; fi
}

pack_library() {
  local abi=$1 module=$work/aar/prefab/modules/$name
  local prefab=$module/libs/android.$abi
  check_library "$abi" "$libraries/$abi/$file"
  [ "$api" -le "$min_sdk" ] || min_sdk=$api
  mkdir -p "$work/aar/jni/$abi" "$prefab" "$work/symbols/$abi"
  cp "$libraries/$abi/$file" "$work/symbols/$abi/"
  llvm-objcopy --strip-unneeded "$libraries/$abi/$file" "$work/aar/jni/$abi/$file"
  cp "$work/aar/jni/$abi/$file" "$prefab/"
  cat >"$prefab/abi.json" <<END
{"abi": "$abi", "api": $api, "ndk": $ndk_version, "stl": "$stl", "static": false}
END
}

# What there is once for all ABIs.
pack_rest() {
  local prefab=$work/aar/prefab
  cp -r include "$prefab/modules/$name/"
  cat >"$prefab/prefab.json" <<END
{"schema_version": 2, "name": "$name", "version": "$version", "dependencies": []}
END
  cat >"$prefab/modules/$name/module.json" <<END
{"export_libraries": [], "library_name": "lib$name", "android": {}}
END
  : >"$work/aar/R.txt"
  cp java/keep-rules.pro "$work/aar/proguard.txt"
  archive "$work/classes" "$work/aar/classes.jar"
  cat >"$work/aar/AndroidManifest.xml" <<END
<?xml version="1.0" encoding="utf-8"?>
<manifest xmlns:android="http://schemas.android.com/apk/res/android" package="com.velmira.VKMakeup">
    <uses-sdk android:minSdkVersion="$min_sdk" />
</manifest>
END
}

# Makes an archive of a folder's files: the same bytes for the same files, whenever and by whom they were written.
archive() {
  chmod -R u=rwX,go=rX "$1"
  find "$1" -exec touch -d '1980-01-01 00:00:00' {} +
  (cd "$1" && find . -type f | sed 's|^\./||' | sort | zip -q -X -D -9 -@ "$2")
}

read_options "$@"
find_tools
build_classes
build_libraries
choose_libraries

mkdir -p "$output"
work=$(mktemp -d "$output/.android_package.XXXXXX")
trap 'rm -rf "$work"' EXIT
unpack_classes
min_sdk=21
for abi in $abis; do
  pack_library "$abi"
done
pack_rest
archive "$work/aar" "$work/aar.zip"
archive "$work/symbols" "$work/symbols.zip"
mv "$work/symbols.zip" "$output/$name-$version-native-debug-symbols.zip"
mv "$work/aar.zip" "$output/$name-$version.aar"
echo "$output/$name-$version.aar: API $min_sdk, ${abis% }"
