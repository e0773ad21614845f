// The output formats of fromelf, from an image's regions: plain binary, the
// hex formats with their checksums, AIF, and the text description.
#pragma once

#include <string>

#include "file_formats.h"

namespace fakeads {

// The regions' bytes one after the other (RO, then RW).
std::string PlainBinary(const ImageFile& image);
// Motorola S-records: an S0 header, S3 data records (32-bit addresses,
// 16 bytes each), an S7 record with the entry point.
std::string MotorolaHex(const ImageFile& image, const std::string& header);
// Intel hex records: ":LLAAAATT...CC". With linear addresses (-i32) an
// extended linear address record (04) opens every 64 KB window and a 05
// record gives the entry; the Intellec form (-ihf) uses extended segment
// records (02) instead and no start record.
std::string IntelHex(const ImageFile& image, bool linear);
// "@address" then one byte per line (-vhx).
std::string VerilogHex(const ImageFile& image);
// Sixteen blank-separated bytes a line (-bhx).
std::string ByteHex(const ImageFile& image);
// A 128-byte AIF header, then the regions (-aif; -aifbin is not executable).
std::string AifImage(const ImageFile& image, bool executable);
// The text description of -text; `flags` holds the letters of the parts
// to show (v d g z t s c r).
std::string TextDescription(const std::string& name, const ImageFile& image, const std::string& flags);
// -text of an object file.
std::string ObjectDescription(const std::string& name, const ObjectFile& object, const std::string& flags);
// -fieldoffsets.
std::string FieldOffsets(const std::string& name, const ImageFile& image);

}  // namespace fakeads
