# Sourced by the scripts that make test images. Needs gcc-arm-none-eabi; the tests themselves do not.
set -e
cd "$(dirname "$0")"
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT

# write_image ELF SOURCE TYPES PREFIX ENUM: the bytes of the image and a constant for the address of each symbol of
# these types, without numbered labels and mapping symbols, as C++.
write_image() {
  arm-none-eabi-objcopy -O binary -j .text "$1" "$tmp/image.bin"
  {
    echo "// Made by make.sh from $2."
    echo "constexpr U8 IMAGE[] = {"
    od -An -v -tx1 "$tmp/image.bin" | sed 's/ \([0-9a-f][0-9a-f]\)/0x\1,/g'
    echo "};"
    echo "enum $5 : U32 {"
    arm-none-eabi-nm "$1" | awk "\$2 ~ /^[$3]\$/ && \$3 !~ /^[0-9\$]/ { print \"  $4_\" \$3 \" = 0x\" \$1 \",\" }"
    echo "};"
  }
}
