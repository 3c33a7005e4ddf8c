// SPDX-License-Identifier: MIT
#include "services/identity/SignInPage.hpp"

#include <fmt/format.h>
#include <openssl/evp.h>

#include "services/support/Secret.hpp"

namespace vek::services {

namespace {

constexpr std::string_view style = R"(
:root { color-scheme: light dark; --page: #f3f4f6; --card: #fff; --text: #16181d; --faint: #4d5360;
  --edge: #7b8190; --line: #d5d8de; --accent: #1f5fbf; --on-accent: #fff; --problem: #b3171f; }
@media (prefers-color-scheme: dark) {
  :root { --page: #14161a; --card: #1f2228; --text: #eceef2; --faint: #b3b9c5; --edge: #878e9c;
    --line: #3a3f49; --accent: #8db8ff; --on-accent: #0c1a30; --problem: #ff9c9c; }
}
* { box-sizing: border-box; }
body { margin: 0; min-height: 100vh; display: grid; place-items: center; padding: 1rem;
  background: var(--page); color: var(--text);
  font: 1rem/1.5 system-ui, "Noto Sans", "DejaVu Sans", sans-serif; }
main { width: 100%; max-width: 24rem; padding: 2rem; border-radius: 0.75rem;
  background: var(--card); border: 1px solid var(--line); }
h1 { margin: 0 0 0.25rem; font-size: 1.5rem; line-height: 1.25; }
p { margin: 0 0 1rem; color: var(--faint); }
a { color: var(--accent); }
label { display: block; margin: 1rem 0 0.25rem; font-weight: 600; }
input { width: 100%; padding: 0.625rem 0.75rem; font: inherit; color: inherit;
  background: var(--card); border: 1px solid var(--edge); border-radius: 0.5rem; }
input[aria-invalid] { border-color: var(--problem); border-width: 2px; }
#problem { margin: 1rem 0 0; color: var(--problem); font-weight: 600; }
.buttons { display: flex; flex-wrap: wrap; gap: 0.75rem; margin-top: 1.5rem; }
button { flex: 1 1 8rem; padding: 0.625rem 1rem; font: inherit; font-weight: 600; cursor: pointer;
  border-radius: 0.5rem; border: 1px solid var(--accent);
  background: var(--accent); color: var(--on-accent); }
button[value=cancel] { background: transparent; color: var(--text); border-color: var(--edge); }
:focus-visible { outline: 3px solid var(--accent); outline-offset: 2px; }
)";

constexpr std::string_view form = R"(<p>VEK asks you to sign in.</p>
{problem}<form method="post">
<input type="hidden" name="guard" value="{guard}">
<label for="name">Name</label>
<input id="name" name="name" value="{name}" autocomplete="username" autocapitalize="none" spellcheck="false" required{nameState}>
<label for="password">Password</label>
<input id="password" name="password" type="password" autocomplete="current-password" required{passwordState}>
<div class="buttons">
<button name="action" value="sign-in">Sign in</button>
<button name="action" value="cancel" formnovalidate>Cancel</button>
</div>
</form>
)";

std::string escaped(std::string_view text) {
  std::string html;
  for (char const letter : text) {
    switch (letter) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      case '\'':
        html += "&#39;";
        break;
      default:
        html += letter;
    }
  }
  return html;
}

/// Allows the pages' one style and nothing else. The scheme of the program is there because a
/// browser also asks the policy about where the answer to a form leads.
std::string policy() {
  auto const digest = sha256(style);
  std::string encoded(45, '\0');
  EVP_EncodeBlock(reinterpret_cast<unsigned char*>(encoded.data()),
                  reinterpret_cast<unsigned char const*>(digest.data()),
                  static_cast<int>(digest.size()));
  encoded.pop_back();
  return "default-src 'none'; style-src 'sha256-" + encoded +
         "'; form-action 'self' com.vek.app:; frame-ancestors 'none'; base-uri 'none'";
}

Response page(int status, std::string_view title, std::string_view heading,
              std::string_view content) {
  static std::string const contentPolicy = policy();
  return {.status = status,
          .body = fmt::format(R"(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>{} - VEK</title>
<style>{}</style>
</head>
<body>
<main>
<h1>{}</h1>
{}</main>
</body>
</html>
)",
                              title, style, heading, content),
          .contentType = "text/html; charset=utf-8",
          .headers = {{"Content-Security-Policy", contentPolicy},
                      {"X-Content-Type-Options", "nosniff"},
                      {"X-Frame-Options", "DENY"},
                      {"Referrer-Policy", "no-referrer"}}};
}

/// The attributes of a field: the problem, where it is about this field, and the focus.
std::string_view state(bool isWrong, bool hasFocus) {
  if (!isWrong) return hasFocus ? " autofocus" : "";
  return hasFocus ? R"( aria-invalid="true" aria-describedby="problem" autofocus)"
                  : R"( aria-invalid="true" aria-describedby="problem")";
}

}  // namespace

Response signInPage(int status, SignInForm const& shown) {
  using Fields = SignInForm::Fields;
  auto const fields = shown.problem.fields;
  bool const isNameWrong = fields == Fields::name || fields == Fields::both;
  bool const isPasswordWrong = fields == Fields::password || fields == Fields::both;
  bool const isNameNext = shown.name.empty() || fields == Fields::name;
  std::string problem;
  if (!shown.problem.text.empty()) {
    problem = fmt::format("<p id=\"problem\" role=\"alert\">{}</p>\n", escaped(shown.problem.text));
  }
  auto const content = fmt::format(
      form, fmt::arg("problem", problem), fmt::arg("guard", escaped(shown.guard)),
      fmt::arg("name", escaped(shown.name)), fmt::arg("nameState", state(isNameWrong, isNameNext)),
      fmt::arg("passwordState", state(isPasswordWrong, !isNameNext)));
  return page(status, problem.empty() ? "Sign in" : "Problem: sign in", "Sign in", content);
}

Response problemPage(int status, std::string_view reason) {
  return page(status, "Problem", "This sign-in cannot go on",
              fmt::format("<p>{}</p>\n<p>You can close this page and begin again in VEK.</p>\n",
                          escaped(reason)));
}

Response redirectPage(std::string const& location) {
  auto response = page(303, "Back to VEK", "Back to VEK",
                       fmt::format("<p><a href=\"{}\">Go on in VEK</a></p>\n", escaped(location)));
  response.headers.emplace_back("Location", location);
  return response;
}

}  // namespace vek::services
