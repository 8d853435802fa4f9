#!/usr/bin/env bash
# Tests scripts/android_package.sh with libraries that clang and lld make of a few lines, which have what the packer looks
# at, and with a folder that looks like an NDK and compiles the library itself.
set -euo pipefail
cd "$(dirname "$0")/../.."
unset ANDROID_NDK ANDROID_NDK_HOME ANDROID_NDK_ROOT
export LC_ALL=C
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
set -E
trap 'echo "android_package test: line $LINENO failed: $BASH_COMMAND" >&2' ERR
file=libVLVKMakeupEngine.so
version=$(awk '/^#define VLVK_VERSION_(MAJOR|MINOR|PATCH) / {printf "%s%s", dot, $3; dot = "."}' include/vlvk/version.h)
aar=VLVKMakeupEngine-$version.aar
symbols=VLVKMakeupEngine-$version-native-debug-symbols.zip

fail() {
  echo "android_package test: $*" >&2
  exit 1
}

target() {
  case "$1" in
    arm64-v8a) echo aarch64-linux-android21 ;;
    armeabi-v7a) echo armv7a-linux-androideabi21 ;;
    x86_64) echo x86_64-linux-android21 ;;
  esac
}

# The note of an NDK's linker, and every exported C function of the library.
write_stand_in() { # API
  cat <<END
__attribute__((section(".note.android.ident"), used, aligned(4))) static const struct {
  int nameSize, size, type;
  char name[8];
  int api;
  char ndk[64], build[64];
} note = {8, 132, 1, "Android", $1, "r25c", "9519653"};
END
  sed '/^_Z/d; s/.*/int &(void) { return 1; }/' tests/install/exported_symbols.txt
}

# stand_in FOLDER ABI API [FLAG...]: links FOLDER/ABI/libVLVKMakeupEngine.so; later flags win.
stand_in() {
  local folder=$1 abi=$2
  mkdir -p "$folder/$abi"
  write_stand_in "$3" | clang --target="$(target "$abi")" -x c - -o "$folder/$abi/$file" -g -shared -fPIC -nostdlib \
    -fuse-ld=lld -Wl,--build-id=sha1 -Wl,-soname,$file -Wl,-z,max-page-size=16384 "${@:4}"
}

package() { bash scripts/android_package.sh "$@" >/dev/null; }
unpack() { unzip -q "$1/$aar" -d "$1/aar" && unzip -q "$1/$symbols" -d "$1/symbols"; }
same() { [ "$1" = "$2" ] || fail "$3: '$1', but must be '$2'"; }

check_library() { # FOLDER ABI API STL
  local jni=$1/aar/jni/$2/$file prefab=$1/aar/prefab/modules/VLVKMakeupEngine/libs/android.$2
  same "$(cat "$prefab/abi.json")" \
    "{\"abi\": \"$2\", \"api\": $3, \"ndk\": 25, \"stl\": \"$4\", \"static\": false}" "abi.json of $2"
  cmp "$jni" "$prefab/$file"
  same "$(llvm-readelf -SW "$jni" | awk '/\.(symtab|debug_info) / {++n} END {print n + 0}')" 0 "symbols of the packed $2"
  same "$(llvm-nm -D "$jni")" "$(llvm-nm -D "$1/symbols/$2/$file")" "exported names of the packed $2"
  same "$(llvm-readelf -n "$jni")" "$(llvm-readelf -n "$1/symbols/$2/$file")" "build ID of the packed $2"
}

expected_files() {
  printf '%s\n' AndroidManifest.xml R.txt classes.jar proguard.txt prefab/prefab.json \
    prefab/modules/VLVKMakeupEngine/module.json
  find include -type f | sed 's|^|prefab/modules/VLVKMakeupEngine/|'
  for abi in arm64-v8a armeabi-v7a x86_64; do
    printf '%s\n' "jni/$abi/$file" "prefab/modules/VLVKMakeupEngine/libs/android.$abi"/{abi.json,$file}
  done
}

test_structure() {
  local made=$work/made
  ANDROID_NDK_HOME=$work/gone package --libraries "$work/good" --output "$made"  # which needs no NDK
  same "$(ls -A "$made")" "$symbols"$'\n'"$aar" "files that were made"
  unpack "$made"
  diff <(expected_files | sort) <(cd "$made/aar" && find . -type f | sed 's|^\./||' | sort)
  diff -r "$work/good" "$made/symbols"
  diff -r include "$made/aar/prefab/modules/VLVKMakeupEngine/include"
  cmp java/keep-rules.pro "$made/aar/proguard.txt"
  same "$(cat "$made/aar/prefab/prefab.json")" \
    "{\"schema_version\": 2, \"name\": \"VLVKMakeupEngine\", \"version\": \"$version\", \"dependencies\": []}" prefab.json
  same "$(cat "$made/aar/prefab/modules/VLVKMakeupEngine/module.json")" \
    '{"export_libraries": [], "library_name": "libVLVKMakeupEngine", "android": {}}' module.json
  same "$(wc -c <"$made/aar/R.txt")" 0 "size of R.txt"
  grep -q 'package="com.velmira.VKMakeup"' "$made/aar/AndroidManifest.xml"
  grep -q 'minSdkVersion="21"' "$made/aar/AndroidManifest.xml"
  for abi in arm64-v8a armeabi-v7a x86_64; do check_library "$made" $abi 21 none; done
  diff <(unzip -Z1 "$made/aar/classes.jar") <(unzip -Z1 build-android-package/classes/VLVKMakeupEngine.jar |
    grep '\.class$' | sort)
}

# Other times, permissions, time zone, place, and classes that are compiled anew.
test_same_bytes() {
  cp -r "$work/good" "$work/later"
  chmod -R go= "$work/later"
  rm build-android-package/classes/VLVKMakeupEngine.jar
  (umask 077 && cd "$work" && TZ=Asia/Tokyo bash "$OLDPWD/scripts/android_package.sh" --libraries later --output again >/dev/null)
  cmp "$work/made/$aar" "$work/again/$aar"
  cmp "$work/made/$symbols" "$work/again/$symbols"
}

# What is packed is read from the library: its API level, and that it wants the shared C++ runtime.
test_other_library() {
  local made=$work/other
  : >"$work/empty.c"
  clang --target="$(target x86_64)" -shared -nostdlib -fuse-ld=lld -Wl,-soname,libc++_shared.so "$work/empty.c" \
    -o "$work/libc++_shared.so"
  stand_in "$work/shared_runtime" x86_64 24 -Wl,--no-as-needed -x none "$work/libc++_shared.so"
  package --libraries "$work/shared_runtime" --output "$made"
  unpack "$made"
  check_library "$made" x86_64 24 c++_shared
  same "$(ls "$made/aar/jni")" x86_64 "ABIs"
  grep -q 'minSdkVersion="24"' "$made/aar/AndroidManifest.xml"
}

# What looks like an NDK: it insists on the settings of the build, and adds the note.
test_ndk() {
  local made=$work/from_ndk cmake=$work/ndk/build/cmake
  mkdir -p "$cmake"
  write_stand_in 21 | sed '/^int /d' | clang --target="$(target arm64-v8a)" -x c -c - -o "$work/ndk/note.o"
  cat >"$cmake/android.toolchain.cmake" <<END
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ANDROID_PLATFORM ANDROID_STL)
if(NOT ANDROID_PLATFORM STREQUAL "android-21" OR NOT ANDROID_STL STREQUAL "c++_static")
  message(FATAL_ERROR "not for API 21 with the C++ runtime inside")
endif()
include($PWD/cmake/toolchains/android_headers.cmake)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ANDROID_PLATFORM ANDROID_STL)
string(APPEND CMAKE_SHARED_LINKER_FLAGS_INIT " -Wl,--build-id=sha1 $work/ndk/note.o")
END
  package --ndk "$work/ndk" --abis arm64-v8a --output "$made"
  unpack "$made"
  check_library "$made" arm64-v8a 21 none
  cmp "$made/symbols/arm64-v8a/$file" build-android-package/arm64-v8a/$file
  llvm-readelf -SW "$made/symbols/arm64-v8a/$file" | grep debug_info >/dev/null
  ! grep -qF "$PWD" "$made/symbols/arm64-v8a/$file" || fail "the library names the folder that it was built in"
}

# An app's C code, with what the package of test_ndk has for it: linked with the library because it finds names there.
test_consumer() {
  local module=$work/from_ndk/aar/prefab/modules/VLVKMakeupEngine
  clang --target="$(target arm64-v8a)" -nostdlibinc -isystem "$PWD/build-android-package/arm64-v8a/stand_ins" \
    -isystem /usr/aarch64-linux-gnu/include -I"$module/include" -Wall -Wextra -Werror tests/install/consumer.c \
    -shared -fPIC -nostdlib -fuse-ld=lld -Wl,--as-needed "$module/libs/android.arm64-v8a/$file" -o "$work/consumer.so"
  llvm-readelf -d "$work/consumer.so" | grep -F "Shared library: [$file]" >/dev/null
}

# refused TEXT ARGUMENT...: one line with the text, a failure, and nothing made.
refused() {
  local status=0
  bash scripts/android_package.sh --output "$work/none" "${@:2}" >"$work/out" 2>"$work/error" || status=$?
  same $status 1 "status where '$1' is expected"
  same "$(wc -l <"$work/error")" 1 "lines where '$1' is expected"
  grep -qF -- "$1" "$work/error" || fail "not refused with '$1': $(cat "$work/error")"
  same "$(ls -A "$work/none")" '' "what is left behind where '$1' is expected"
}

# refused_library TEXT FLAG...: a library that is linked with these flags.
refused_library() {
  rm -rf "$work/bad"
  stand_in "$work/bad" arm64-v8a 21 "${@:2}"
  refused "$1" --libraries "$work/bad"
}

test_refusals() {
  mkdir "$work/none" "$work/bad"
  refused 'no NDK and no libraries'
  refused "of --ndk is no NDK" --ndk "$work"
  ANDROID_NDK_HOME=$work refused "'$work' of ANDROID_NDK_HOME is no NDK"
  refused 'is not a folder' --libraries "$work/nowhere"
  refused 'has no ABI/' --libraries "$work"
  refused "no ABI 'mips'" --libraries "$work/good" --abis mips
  refused 'x86_64/libVLVKMakeupEngine.so'\'' does not exist' --libraries "$work/bad" --abis x86_64
  refused "no option '--lib'" --lib "$work/good"
  refused '--libraries takes a value' --libraries

  refused_library 'must have the SONAME' -Wl,-soname,$file.1
  refused_library 'has no build ID' -Wl,--build-id=none
  refused_library 'is stripped' -Wl,--strip-all
  refused_library 'pages of 16 KiB' -Wl,-z,max-page-size=4096
  refused_library 'has no note of an NDK' -Dused=unused
  refused_library 'does not export JNI_OnLoad' -DJNI_OnLoad=other
  echo 'nothing' >"$work/bad/arm64-v8a/$file"
  refused 'is not an ELF file' --libraries "$work/bad"
  cp "$work/good/armeabi-v7a/$file" "$work/bad/arm64-v8a/"
  refused 'is for ARM, but must be for AArch64' --libraries "$work/bad"

  mkdir "$work/path"
  ln -s /usr/bin/* "$work/path/"
  rm "$work/path/llvm-objcopy"
  PATH=$work/path refused 'llvm-objcopy is missing' --libraries "$work/good"
}

for abi in arm64-v8a armeabi-v7a x86_64; do stand_in "$work/good" $abi 21; done
for test in test_structure test_same_bytes test_other_library test_refusals test_ndk test_consumer; do
  begin=$SECONDS
  $test
  echo "$test: passed ($((SECONDS - begin)) s)"
done
