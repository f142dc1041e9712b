#pragma once

#include <QString>

#include <span>

struct FilePicker;

/** What the options dialog shows: its pages and, one row each, the settings on them. */
namespace options {

enum class Editor { Check, Number, Line, File, Template, Servers, Character };

/** Says in words what is wrong with a value; empty when nothing is. Saving goes on regardless. */
using Check = QString (*)(const QString &value);

/** What only some rows need. */
struct More {
    double low = 0; // of a number
    double high = 0;
    int decimals = 0;
    const char *unit = "";
    const char *hint = nullptr; // a line below the control
    const char *group = nullptr; // the frame around the rows of that name
    const char *needs = nullptr; // the flag of the same section without which the row means nothing
    Check check = nullptr;
    const FilePicker *picker = nullptr; // of a file
    int lines = 1; // of a template
    const char *reason = nullptr; // of the change in a template's example
};

/** One setting on one page. Its kind and its default are the catalogue's. */
struct Row {
    const char *page;
    const char *section;
    const char *key;
    Editor editor;
    const char *label; // its mnemonic is the only one of its page
    const char *tip;
    More more = {};
};

struct Page {
    const char *key;
    const char *parent; // null: the root of the tree
    const char *label;
    const char *purpose;
};

/** In the order of the tree; parents come before their children. */
std::span<const Page> pages();
/** In the order of the pages' layouts. */
std::span<const Row> rows();

} // namespace options
