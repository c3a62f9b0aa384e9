#include "platform/Cursor.h"

#include <map>
#include <memory>

#include "platform/HandleTable.h"
#include "platform/WindowInternal.h"

namespace mx::platform {

namespace {

struct CursorObject {
  int id = 0;        // IDC_ number of a standard cursor, 0 for a made one
  POINT hotSpot{};
  SIZE size{32, 32};
};

struct CursorState {
  HandleTable<CursorObject> table{HandleType::Cursor};
  std::map<int, HCURSOR> standard;
  HCURSOR current = 0;
  // The shared standard cursors are the system's for the thread's lifetime and stay out of the
  // live counts; they are given back before the table subtracts everything it holds.
  ~CursorState() {
    for (const auto& [id, h] : standard)
      if (table.valid(h)) AdjustLiveHandleCount(HandleType::Cursor, +1);
  }
};

CursorState& State() {
  thread_local CursorState state;
  return state;
}

bool IsStandardId(int id) {
  switch (id) {
    case IDC_ARROW: case IDC_IBEAM: case IDC_WAIT: case IDC_CROSS: case IDC_UPARROW: case IDC_SIZE:
    case IDC_ICON: case IDC_SIZENWSE: case IDC_SIZENESW: case IDC_SIZEWE: case IDC_SIZENS: case IDC_SIZEALL:
    case IDC_NO: case IDC_HAND: case IDC_APPSTARTING: case IDC_HELP:
      return true;
    default:
      return false;
  }
}

POINT StandardHotSpot(int id) {
  switch (id) {
    case IDC_ARROW: case IDC_APPSTARTING: case IDC_HELP: case IDC_UPARROW: return {0, 0};
    case IDC_HAND: return {5, 0};
    default: return {16, 16};
  }
}

}  // namespace

HCURSOR LoadCursorW(HANDLE hInstance, int id) {
  if (hInstance || !IsStandardId(id)) return 0;
  auto& st = State();
  auto it = st.standard.find(id);
  if (it != st.standard.end() && st.table.valid(it->second)) return it->second;
  auto obj = std::make_unique<CursorObject>();
  obj->id = id;
  obj->hotSpot = StandardHotSpot(id);
  HCURSOR h = st.table.add(std::move(obj));
  if (!h) return 0;
  AdjustLiveHandleCount(HandleType::Cursor, -1);
  st.standard[id] = h;
  return h;
}

HCURSOR CreateCursor(HANDLE, int xHotSpot, int yHotSpot, int width, int height, const void*, const void*) {
  if (width <= 0 || height <= 0 || xHotSpot < 0 || yHotSpot < 0 || xHotSpot >= width || yHotSpot >= height) return 0;
  auto obj = std::make_unique<CursorObject>();
  obj->hotSpot = {xHotSpot, yHotSpot};
  obj->size = {width, height};
  return State().table.add(std::move(obj));
}

BOOL DestroyCursor(HCURSOR cursor) {
  auto& st = State();
  CursorObject* c = st.table.get(cursor);
  if (!c || c->id) return FALSE;  // shared cursors live as long as the thread
  if (st.current == cursor) st.current = 0;
  st.table.remove(cursor);
  return TRUE;
}

HCURSOR SetCursor(HCURSOR cursor) {
  auto& st = State();
  if (cursor && !st.table.valid(cursor)) return st.current;
  HCURSOR old = st.current;
  st.current = cursor;
  return old;
}

HCURSOR GetCursor() {
  auto& st = State();
  if (st.current && !st.table.valid(st.current)) st.current = 0;
  return st.current;
}

int CursorId(HCURSOR cursor) {
  CursorObject* c = State().table.get(cursor);
  return c ? c->id : 0;
}

BOOL GetCursorHotSpot(HCURSOR cursor, POINT* hotSpot) {
  CursorObject* c = State().table.get(cursor);
  if (!c || !hotSpot) return FALSE;
  *hotSpot = c->hotSpot;
  return TRUE;
}

}  // namespace mx::platform
