#pragma once
// The host's drag-and-drop data object: what a drop or an OLE drag hands to a control. It holds
// data by clipboard format and a Files list.
//
// Files, as the host gives it, carries ANSI names: characters outside Windows-1252 have become
// "?". The full names travel in the drop list (format vbCFFiles), a DROPFILES record:
//
//   pFiles (offset of the names, 20) | pt.x | pt.y | fNC | fWide | names, each zero-terminated,
//   UTF-16 when fWide else Windows-1252, and one more zero at the end
//
// which DropList hands out the way the platform's data object would.
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "host/String.h"
#include "host/Variant.h"

namespace mx::host {

// The host's clipboard format constants.
enum ClipBoardConstants : int16_t {
  vbCFText = 1,
  vbCFBitmap = 2,
  vbCFMetafile = 3,
  vbCFDIB = 8,
  vbCFPalette = 9,
  vbCFEMetafile = 14,
  vbCFFiles = 15,
  vbCFRTF = -16639,
};

// A DROPFILES record for the names (wide or narrow).
[[nodiscard]] ByteArray MakeDropFiles(std::span<const String> names, bool wide = true);
// The names of a DROPFILES record; nothing when the record is damaged. wide receives fWide.
[[nodiscard]] std::optional<std::vector<String>> ParseDropFiles(std::span<const uint8_t> record,
                                                                bool* wide = nullptr);

class DataObject {
 public:
  // The Files collection: 1-based Item, Count, Add, Remove, Clear.
  class DataObjectFiles {
   public:
    [[nodiscard]] int32_t Count() const { return static_cast<int32_t>(m_names.size()); }
    // Raises 9 (subscript out of range) outside 1..Count.
    [[nodiscard]] const String& Item(int32_t index) const;
    // At the end, or before the 1-based position `before`.
    void Add(const String& name, int32_t before = 0);
    void Remove(int32_t index);
    void Clear() { m_names.clear(); }

   private:
    std::vector<String> m_names;
  };

  [[nodiscard]] DataObjectFiles& Files() { return m_files; }
  [[nodiscard]] const DataObjectFiles& Files() const { return m_files; }

  // Whether data of the format is present (vbCFFiles: a drop list or any Files entry).
  [[nodiscard]] bool GetFormat(int16_t format) const;
  // Text formats give a String, picture formats the bytes of a StdPicture-ready file (a DIB as
  // a BMP file), the rest their bytes; Empty when absent. Raises 461 for a format not present,
  // as the host does.
  [[nodiscard]] Variant GetData(int16_t format) const;
  // Text as a String, anything else as bytes.
  void SetData(const Variant& value, int16_t format);
  // Removes all data and the Files list.
  void Clear();

  // A drop of files, as the shell makes it: the drop list with full (wide) names, and Files with
  // their ANSI forms.
  void SetDroppedFiles(std::span<const String> names, bool wide = true);
  // The raw drop list (the platform data object's CF_HDROP data), when there is one.
  [[nodiscard]] std::optional<ByteArray> DropList() const;

 private:
  std::map<int16_t, ByteArray> m_data;
  DataObjectFiles m_files;
};

}  // namespace mx::host
