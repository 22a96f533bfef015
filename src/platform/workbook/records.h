#pragma once

#include <QtCore/qglobal.h>

namespace corvane::biff {

/// Longest data of one record; what is longer goes on in Continue records ([MS-XLS] Record).
constexpr qsizetype kMaxRecordData = 8224;
constexpr qsizetype kRecordHeader = 4;
/// Rows and columns of a sheet ([MS-XLS] Rw, Col256U).
constexpr int kMaxRows = 65'536;
constexpr int kMaxColumns = 256;
constexpr int kMaxCellText = 32'767;

/// Record types by their names in [MS-XLS] 2.3.
enum class Record : quint16 {
    CalcCount = 0x000C,
    CalcMode = 0x000D,
    CalcPrecision = 0x000E,
    CalcRefMode = 0x000F,
    CalcDelta = 0x0010,
    CalcIter = 0x0011,
    Protect = 0x0012,
    Password = 0x0013,
    Header = 0x0014,
    Footer = 0x0015,
    ExternSheet = 0x0017,
    Lbl = 0x0018,
    WinProtect = 0x0019,
    Selection = 0x001D,
    Date1904 = 0x0022,
    PrintRowCol = 0x002A,
    PrintGrid = 0x002B,
    Font = 0x0031,
    Continue = 0x003C,
    Window1 = 0x003D,
    Backup = 0x0040,
    Pane = 0x0041,
    CodePage = 0x0042,
    DefColWidth = 0x0055,
    WriteAccess = 0x005C,
    Obj = 0x005D,
    CalcSaveRecalc = 0x005F,
    ColInfo = 0x007D,
    Guts = 0x0080,
    WsBool = 0x0081,
    GridSet = 0x0082,
    HCenter = 0x0083,
    VCenter = 0x0084,
    BoundSheet8 = 0x0085,
    Country = 0x008C,
    HideObj = 0x008D,
    AutoFilterInfo = 0x009D,
    Setup = 0x00A1,
    BookBool = 0x00DA,
    Xf = 0x00E0,
    InterfaceHdr = 0x00E1,
    Mms = 0x00C1,
    InterfaceEnd = 0x00E2,
    MsoDrawingGroup = 0x00EB,
    MsoDrawing = 0x00EC,
    Sst = 0x00FC,
    LabelSst = 0x00FD,
    ExtSst = 0x00FF,
    RrTabId = 0x013D,
    UsesElfs = 0x0160,
    Dsf = 0x0161,
    Prot4Rev = 0x01AF,
    SupBook = 0x01AE,
    RefreshAll = 0x01B7,
    Prot4RevPass = 0x01BC,
    Dimensions = 0x0200,
    Number = 0x0203,
    BoolErr = 0x0205,
    Row = 0x0208,
    DefaultRowHeight = 0x0225,
    Window2 = 0x023E,
    Rk = 0x027E,
    Style = 0x0293,
    Format = 0x041E,
    Bof = 0x0809,
    Eof = 0x000A,
};

} // namespace corvane::biff
