#pragma once

/// Every length of the window, in logical pixels. Margins, gaps and sizes come from here, so that
/// all views keep one rhythm.
namespace tarn::Metrics {

/// The scale of margins and gaps.
inline constexpr int space2 = 2;
inline constexpr int space4 = 4;
inline constexpr int space6 = 6;
inline constexpr int space8 = 8;
inline constexpr int space12 = 12;
inline constexpr int space16 = 16;
inline constexpr int space24 = 24;

inline constexpr int hairline = 1;
inline constexpr int focusRing = 2;

/// Radii of corners: small marks, controls, rows and cells, cards and popups.
inline constexpr int radiusSmall = 4;
inline constexpr int radiusControl = 6;
inline constexpr int radiusRow = 8;
inline constexpr int radiusCard = 10;

/// Rows of lists.
inline constexpr int rowCompact = 28;
inline constexpr int rowDefault = 32;
inline constexpr int rowRoomy = 40;
/// With a second, smaller line of text.
inline constexpr int rowTwoLines = 48;

/// Icons: in chips and small buttons, in rows, in toolbars, beside titles, on empty pages.
inline constexpr int iconSmall = 16;
inline constexpr int iconRow = 20;
inline constexpr int iconToolbar = 16;
inline constexpr int iconLarge = 32;
inline constexpr int iconState = 64;
/// What the grid offers, smallest to largest.
inline constexpr int gridIconSizes[] = {48, 64, 96, 128, 168, 256};
inline constexpr int gridIconDefault = 96;

/// The dot of a tag, and how far the next one of the same row is moved on.
inline constexpr int tagDot = 10;
inline constexpr int tagDotStep = 7;

/// Nothing that can be clicked is smaller, but for the ✕ of a chip.
inline constexpr int smallestTarget = 24;
inline constexpr int chipCloseTarget = 20;
inline constexpr int chipHeight = 28;
/// Buttons and fields of the toolbar.
inline constexpr int controlHeight = 32;
inline constexpr int toolbarHeight = 48;
inline constexpr int menuMinimumWidth = 160;
/// Texts in menus that hold the names of files are cut off here.
inline constexpr int menuTextWidth = 240;
inline constexpr int busyLineHeight = 2;
inline constexpr int scrollBarWidth = 12;
inline constexpr int scrollHandleLength = 32;

inline constexpr int sidebarMinimum = 200;
inline constexpr int sidebarDefault = 220;
inline constexpr int sidebarMaximum = 320;
inline constexpr int inspectorMinimum = 280;
inline constexpr int inspectorMaximum = 320;
inline constexpr int contentMinimum = 360;
/// Below these window widths the sidebar and the inspector fold away.
inline constexpr int sidebarFolds = 700;
/// Below this width the toolbar has only what cannot be done without; the rest is in the menu.
inline constexpr int toolbarFolds = 480;
inline constexpr int inspectorFolds = 900;

/// Tabs share the width of their row between these bounds.
inline constexpr int tabMinimum = 112;
inline constexpr int tabMaximum = 240;
inline constexpr int tabHeight = 32;
/// The narrowest of two panes beside each other; where there is less room they stand one above the
/// other.
inline constexpr int paneMinimum = 280;
/// The content of the start screen, and one of its tiles.
inline constexpr int startWidth = 880;
inline constexpr int startTileWidth = 180;
inline constexpr int startFieldHeight = 44;

/// How far the pointer goes before a press becomes a drag: enough that a hand that shakes moves no
/// file.
inline constexpr int dragThreshold = 12;

inline constexpr int searchFieldMinimum = 120;
inline constexpr int searchFieldWidth = 220;
inline constexpr int searchFieldFocused = 340;
inline constexpr int pathBarMinimum = 160;
inline constexpr int crumbMaximum = 240;
inline constexpr int stateTextWidth = 420;

/// Motion, in milliseconds; none at all when the style's animation duration is 0.
inline constexpr int motion = 150;
inline constexpr int fadeIn = 120;

/// Parts of the text colour laid over the ground below a control.
inline constexpr double hoverTint = 0.07;
inline constexpr double checkedTint = 0.10;
inline constexpr double checkedHoverTint = 0.13;

}  // namespace tarn::Metrics
