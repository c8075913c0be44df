// Html.h - the parts that pages are put together of.
#pragma once

#include <string>
#include <string_view>

// For text between tags and in double quotes.
std::string Escaped(std::string_view text);

struct PageFrame {
    std::string title;      // not yet escaped
    std::string formToken;  // empty: nobody is logged in
    std::string done;       // what has just been done, as text; may be empty
    std::string fault;      // what could not be done, as text; may be empty
};

// A whole page around `content`, which is HTML. It needs no script and no other host.
std::string Page(const PageFrame& frame, const std::string& content);

// A form with one button, sent by POST to `action`.
std::string ButtonForm(const std::string& action, const std::string& formToken,
                       const std::string& button, const std::string& className = "");
// The hidden field of `formToken`, for other forms.
std::string TokenField(const std::string& formToken);

// What browsers ask for beside the pages.
extern const char kStyleSheet[];
extern const char kIcon[];
