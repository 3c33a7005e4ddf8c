// SPDX-License-Identifier: MIT
#include "identity/IDTokenValidator.hpp"

#include <fmt/format.h>

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

#include "platform/HTTPError.hpp"
#include "platform/PublicKey.hpp"
#include "records/Base64URL.hpp"
#include "runtime/SyncWait.hpp"
#include "support/TokenSigner.hpp"

namespace vek {
namespace {

using test::TokenSigner;

constexpr char const* header = R"({"alg":"RS256","kid":"k"})";
constexpr int now = 1'700'000'000;

std::string const goodBody =
    R"({"iss":"https://provider.test/","sub":"u","aud":"client","exp":1700086400,"iat":1700000000})";

TokenSigner const& signer() {
  static auto const* const instance = new TokenSigner;
  return *instance;
}

std::string keySet(std::string const& keys) {
  return "{\"keys\":[" + keys + "]}";
}

/// The body of a token that is good but for `changes`, of which null takes a claim away.
std::string bodyWith(std::string_view changes) {
  auto claims = boost::json::parse(goodBody).as_object();
  auto const changed = boost::json::parse(changes).as_object();
  for (auto const& [name, value] : changed) {
    if (value.is_null()) {
      claims.erase(name);
    } else {
      claims[name] = value;
    }
  }
  return boost::json::serialize(claims);
}

struct IDTokenValidatorTest : testing::Test {
  std::string keys = keySet(signer().jwk("other") + "," + signer().jwk("k"));
  int fetches = 0;
  HTTPClient session{[this](HTTPRequest) -> Task<HTTPResponse> {
    ++fetches;
    if (keys.empty()) throw HTTPError(HTTPError::Code::cannotConnect, "");
    co_return HTTPResponse{.status = 200, .body = keys};
  }};
  IDTokenValidatorContext context{.issuer = "https://provider.test/",
                                  .audience = "client",
                                  .jwksRequest = keySetRequest(),
                                  .leeway = 60};

  [[nodiscard]] Request<JWKS, AuthenticationError> keySetRequest() const {
    return {{.session = session, .url = "https://provider.test/keys", .method = "GET"},
            [](Response const& response) { return response.decoded<JWKS>(); }};
  }

  /// Why the token is refused; empty when it counts.
  std::string refusal(std::string token) {
    IDTokenValidator const validator(context, Date(std::chrono::seconds(now)));
    try {
      syncWait(validator.validate(std::move(token)));
      return "";
    } catch (std::exception const& error) {
      return error.what();
    }
  }

  std::string refusalOfBody(std::string_view body) { return refusal(signer().token(header, body)); }
  std::string refusalOfChanged(std::string_view changes) {
    return refusalOfBody(bodyWith(changes));
  }
};

// The example of RFC 7515, appendix A.2.
constexpr char const* rfcToken =
    "eyJhbGciOiJSUzI1NiJ9.eyJpc3MiOiJqb2UiLA0KICJleHAiOjEzMDA4MTkzODAsDQogImh0dHA6Ly9leGFtcGxlLmNv"
    "bS9pc19yb290Ijp0cnVlfQ.cC4hiUPoj9Eetdgtv3hF80EGrhuB__dzERat0XF9g2VtQgr9PJbu3XOiZj5RZmh7AAuHIm4"
    "Bh-0Qc_lF5YKt_O8W2Fp5jujGbds9uJdbF9CUAr7t1dnZcAcQjbKBYNX4BAynRFdiuB--f_nZLgrnbyTyWzO75vRK5h6xB"
    "ArLIARNPvkSjtQBMHlb1L07Qe7K0GarZRmB_eSN9383LcOLn6_dO--xi12jzDwusC-eOkHWEsqtFZESc6BfI7noOPqvhJ1"
    "phCnvWh6IeYI2w9QOYEUipUTI8np6LbgGY9Fs98rqVt5AXLIhWkWywlVmtVrBp0igcN_IoypGlUPQGe77Rw";
constexpr char const* rfcModulus =
    "ofgWCuLjybRlzo0tZWJjNiuSfb4p4fAkd_wWJcyQoTbji9k0l8W26mPddxHmfHQp-Vaw-4qPCJrcS2mJPMEzP1Pt0Bm4d4"
    "QlL-yRT-SFd2lZS-pCgNMsD1W_YpRPEwOWvG6b32690r2jZ47soMZo9wGzjb_7OMg0LOL-bSf63kpaSHSXndS5z5rexMdb"
    "BYUsLA9e-KXBdQOS-UTo7WTBEMa2R2CapHg665xsmtdVMTBQY4uDZlxvb3qCo5ZwKh9kG4LT6_I5IhlJH7aGhyxXFvUK-D"
    "WNmoudF8NAco9_h9iaGNj8q2ethFkMLs91kzk2PAcDTW9gb54h4FRWyuXpoQ";

struct Case {
  char const* given;
  char const* message;
};

TEST(JWT, ReadsTheExamplesOfTheStandards) {
  JWT const token(rfcToken);
  EXPECT_EQ(token.iss(), "joe");
  EXPECT_EQ(token.exp(), JWT::Time(std::chrono::seconds(1300819380)));
  EXPECT_EQ(token.body().at("http://example.com/is_root"), true);
  auto const key = PublicKey::createWithData(Base64URL::decode(rfcModulus).value(),
                                             Base64URL::decode("AQAB").value());
  auto const signature = Base64URL::decode(token.signature().value()).value();
  ASSERT_TRUE(key);
  EXPECT_TRUE(key->verifySignature(token.signedPart(), signature));
}

TEST(JWT, SaysWhatIsNoToken) {
  for (auto const& sample :
       {Case{"e30.e30", "The JWT e30.e30 has 2 parts when it should have 3 parts."},
        Case{"", "The JWT  has 1 parts when it should have 3 parts."},
        Case{"e30.e30.x.", "The JWT e30.e30.x. has 4 parts when it should have 3 parts."},
        Case{"e30=.e30.", "Failed to decode Base64URL value e30="},
        Case{"e30.e.", "Failed to decode Base64URL value e"},
        Case{"e30.e31.", "Failed to decode Base64URL value e31"},
        Case{"e30.e3+.", "Failed to decode Base64URL value e3+"},
        Case{"..", "Failed to parse JSON from Base64URL value "},
        Case{"e30.W10.", "Failed to parse JSON from Base64URL value W10"}}) {
    EXPECT_THAT([&] { (void)JWT(sample.given); },
                testing::ThrowsMessage<JWTDecodingError>(sample.message));
  }
  EXPECT_EQ(JWT("e30.e30.").signature(), std::nullopt);
}

TEST_F(IDTokenValidatorTest, AcceptsWhatTheProviderHasSigned) {
  EXPECT_EQ(refusalOfBody(goodBody), "");
  EXPECT_EQ(fetches, 1);
  EXPECT_EQ(refusalOfChanged(R"({"aud":["x","client"],"azp":"client"})"), "");
  EXPECT_EQ(refusalOfChanged(R"({"aud":["client"],"azp":"x"})"), "") << "one audience needs no azp";
  EXPECT_EQ(refusalOfChanged(R"({"iat":-5})"), "");
  EXPECT_EQ(refusalOfChanged(R"({"exp":253402300799})"), "");
  EXPECT_EQ(refusalOfChanged(R"({"exp":1699999941})"), "");
  context.leeway = 60000;
  EXPECT_EQ(refusalOfChanged(R"({"exp":1699940001})"), "") << "60000 is seconds";
  context.nonce = "n";
  context.maxAge = 100;
  context.organization = "org_1";
  EXPECT_EQ(refusalOfChanged(R"({"nonce":"n","auth_time":1699939900,"org_id":"org_1"})"), "");
}

TEST_F(IDTokenValidatorTest, SaysWhichClaimIsWrong) {
  context.nonce = "n";
  context.maxAge = 10;
  context.organization = "org_1";
  for (auto const& [changes, message] : {
           Case{R"({"iss":null})", "Issuer (iss) claim must be a string present in the ID token"},
           Case{R"({"iss":["https://provider.test/"]})",
                "Issuer (iss) claim must be a string present in the ID token"},
           Case{R"({"iss":"https://provider.test"})",
                "Issuer (iss) claim mismatch in the ID token, expected (https://provider.test/), "
                "found (https://provider.test)"},
           Case{R"({"sub":7})", "Subject (sub) claim must be a string present in the ID token"},
           Case{R"({"aud":["client",1]})",
                "Audience (aud) claim must be a string or array of strings present in the ID "
                "token"},
           Case{R"({"aud":"x"})",
                "Audience (aud) claim mismatch in the ID token; expected (client) but found (x)"},
           Case{R"({"aud":["x","y"]})",
                "Audience (aud) claim mismatch in the ID token; expected (client) but was not one "
                "of (x, y)"},
           Case{R"({"exp":"1700086400"})",
                "Expiration time (exp) claim must be a number present in the ID token"},
           Case{R"({"exp":1e300})",
                "Expiration time (exp) claim must be a number present in the ID token"},
           Case{R"({"exp":1699999940})",
                "Expiration time (exp) claim error in the ID token; current time (1700000000) is "
                "after expiration time (1699999940)"},
           Case{R"({"exp":-1})",
                "Expiration time (exp) claim error in the ID token; current time (1700000000) is "
                "after expiration time (-1)"},
           Case{R"({"iat":true})",
                "Issued At (iat) claim must be a number present in the ID token"},
           Case{"{}", "Nonce (nonce) claim must be a string present in the ID token"},
           Case{R"({"nonce":"m"})",
                "Nonce (nonce) claim value mismatch in the ID token; expected (n), found (m)"},
           Case{R"({"nonce":"n","aud":["client","x"]})",
                "Authorized Party (azp) claim must be a string present in the ID token when "
                "Audience (aud) claim has multiple values"},
           Case{R"({"nonce":"n","aud":["client","x"],"azp":"x"})",
                "Authorized Party (azp) claim mismatch in the ID token; expected (client), found "
                "(x)"},
           Case{R"({"nonce":"n"})",
                "Authentication Time (auth_time) claim must be a number present in the ID token "
                "when Max Age (max_age) is specified"},
           Case{R"({"nonce":"n","auth_time":1699999929})",
                "Authentication Time (auth_time) claim in the ID token indicates that too much "
                "time has passed since the last user authentication. Current time (1700000000) is "
                "after last auth time (1699999929)"},
           Case{R"({"nonce":"n","auth_time":1700000000})",
                "Organization Id (org_id) claim must be a string present in the ID token"},
           Case{R"({"nonce":"n","auth_time":1700000000,"org_id":"org_2"})",
                "Organization Id (org_id) claim value mismatch in the ID token; expected (org_1), "
                "found (org_2)"},
       }) {
    EXPECT_EQ(refusalOfChanged(changes), message) << changes;
  }
  context = {.issuer = context.issuer,
             .audience = "client",
             .jwksRequest = context.jwksRequest,
             .organization = "name"};
  EXPECT_EQ(refusalOfBody(goodBody),
            "Organization Name (org_name) claim must be a string present in the ID token");
  EXPECT_EQ(refusalOfChanged(R"({"org_name":"x"})"),
            "Organization Name (org_name) claim value mismatch in the ID token; expected (name), "
            "found (x)");
}

TEST_F(IDTokenValidatorTest, RefusesForgedSignatures) {
  std::string const invalid = "Invalid ID token signature";
  auto const good = signer().token(header, goodBody);
  auto const unsignedPart = good.substr(0, good.rfind('.'));
  auto const signature = Base64URL::decode(good.substr(unsignedPart.size() + 1)).value();
  auto const withSignature = [&](std::string_view bytes) {
    return unsignedPart + "." + Base64URL::encode(bytes);
  };
  for (std::size_t bit = 0; bit < signature.size() * 8; bit += 97) {
    auto flipped = signature;
    flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << bit % 8));
    ASSERT_EQ(refusal(withSignature(flipped)), invalid) << "bit " << bit;
  }
  for (auto const& token :
       {unsignedPart + ".", withSignature(signature.substr(1)), withSignature(signature + '\0'),
        withSignature('\0' + signature), withSignature(std::string(256, '\0')),
        withSignature(std::string(10'000, 'x')), good + "=",
        good + "==", good.substr(0, good.size() - 1), unsignedPart + ".!!!!",
        TokenSigner().token(header, goodBody),
        good.substr(0, unsignedPart.find('.')) + "." +
            Base64URL::encode(bodyWith(R"({"sub":"v"})")) + good.substr(unsignedPart.size())}) {
    EXPECT_EQ(refusal(token), invalid) << token;
  }
}

TEST_F(IDTokenValidatorTest, TakesNoAlgorithmButItsOwnAndFetchesNothing) {
  for (auto const& [algorithm, shown] :
       {std::pair("\"none\"", "none"), std::pair("\"None\"", "None"),
        std::pair("\"HS256\"", "HS256"), std::pair("\"ES256\"", "ES256"),
        std::pair("\"rs256\"", "rs256"), std::pair("null", "nil"),
        std::pair("[\"RS256\"]", "nil")}) {
    auto const expected = fmt::format(
        "Signature algorithm of \"{}\" is not supported. Expected the ID token to be signed with "
        "\"RS256\"",
        shown);
    EXPECT_EQ(
        refusal(signer().token(fmt::format(R"({{"alg":{},"kid":"k"}})", algorithm), goodBody)),
        expected);
  }
  // The unsecured example of RFC 7519, and its signed one, whose algorithm could take a public key
  // for its secret.
  for (auto const* token :
       {"eyJhbGciOiJub25lIn0.eyJpc3MiOiJqb2UiLA0KICJleHAiOjEzMDA4MTkzODAsDQogImh0dHA6Ly9leGFtcGxlL"
        "mNvbS9pc19yb290Ijp0cnVlfQ.",
        "eyJ0eXAiOiJKV1QiLA0KICJhbGciOiJIUzI1NiJ9.eyJpc3MiOiJqb2UiLA0KICJleHAiOjEzMDA4MTkzODAsDQogI"
        "mh0dHA6Ly9leGFtcGxlLmNvbS9pc19yb290Ijp0cnVlfQ.dBjftJeZ4CVP-mB92K27uhbUJU1p1r_"
        "wW1gFWFOEjXk"}) {
    EXPECT_THAT(refusal(token), testing::StartsWith("Signature algorithm of "));
  }
  EXPECT_EQ(fetches, 0);
}

TEST_F(IDTokenValidatorTest, TakesNoKeyButASoundOneOfItsName) {
  auto const missing = [](std::string_view keyId) {
    return fmt::format("Could not find a public key for Key ID (kid) \"{}\"", keyId);
  };
  EXPECT_EQ(refusal(signer().token(R"({"alg":"RS256"})", goodBody)), missing("nil"));
  EXPECT_EQ(refusal(signer().token(R"({"alg":"RS256","kid":"x"})", goodBody)), missing("x"));
  for (auto const* answer : {"", "{}", "[]", "no JSON", R"({"keys":[]})",
                             R"({"keys":[{"kid":"k"}]})", R"({"keys":[{"kty":"RSA"}]})"}) {
    keys = answer;
    EXPECT_EQ(refusalOfBody(goodBody), missing("k")) << answer;
  }

  auto const n = Base64URL::encode(signer().modulus());
  auto const key = [](std::string_view type, std::string_view modulus, std::string_view exponent) {
    return keySet(
        fmt::format(R"({{"kty":"{}","kid":"k","n":"{}","e":"{}"}})", type, modulus, exponent));
  };
  TokenSigner const small(1024);
  TokenSigner const cube(2048, 3);
  struct Key {
    char const* name;
    TokenSigner const& signer;
    std::string keys;
  };
  for (auto const& [name, by, set] : {
           Key{"another type", signer(), key("EC", n, "AQAB")},
           Key{"no numbers", signer(), keySet(R"({"kty":"RSA","kid":"k"})")},
           Key{"padding", signer(), key("RSA", n, "AQAB=")},
           Key{"small modulus", small, keySet(small.jwk("k"))},
           Key{"small exponent", cube, keySet(cube.jwk("k"))},
           Key{"exponent 1", signer(), key("RSA", n, "AQ")},
           Key{"exponent 0", signer(), key("RSA", n, "AA")},
           Key{"even exponent", signer(), key("RSA", n, "AQAC")},
           Key{"huge exponent", signer(), key("RSA", n, n)},
           Key{"even modulus", signer(),
               key("RSA", Base64URL::encode(std::string(256, '\x80')), "AQAB")},
           Key{"modulus 0", signer(),
               key("RSA", Base64URL::encode(std::string(256, '\0')), "AQAB")},
           Key{"huge modulus", signer(),
               key("RSA", Base64URL::encode(std::string(500'000, '\xff')), "AQAB")},
       }) {
    keys = set;
    EXPECT_EQ(refusal(by.token(header, goodBody)), "Invalid ID token signature") << name;
  }
}

TEST_F(IDTokenValidatorTest, RefusesWhatItCannotReadBeforeItFetches) {
  std::string const undecodable = "ID token could not be decoded";
  constexpr std::size_t large = std::size_t{10} << 20U;
  auto const deep = [](std::size_t depth, std::string_view open, std::string_view close) {
    std::string text;
    for (std::size_t i = 0; i < depth; ++i) text += open;
    text += "1";
    for (std::size_t i = 0; i < depth; ++i) text += close;
    return text;
  };
  auto const begun = std::chrono::steady_clock::now();
  for (auto const& body : {
           std::string("[]"),
           std::string("\"text\""),
           std::string("{\"sub\":\"u\""),
           std::string("{\"sub\":\"\xff\"}"),
           "{\"exp\":" + std::string(1000, '-') + "1}",
           goodBody.substr(0, goodBody.size() - 1) + R"(,"sub":"v"})",
           goodBody.substr(0, goodBody.size() - 1) + R"(,"s\u0075b":"v"})",
           deep(40, "{\"a\":", "}"),
           "{\"a\":" + deep(10'000, "[", "]") + "}",
           bodyWith(R"({"text":")" + std::string(large, 'x') + "\"}"),
       }) {
    EXPECT_EQ(refusalOfBody(body), undecodable) << body.substr(0, 100);
  }
  auto const good = signer().token(header, goodBody);
  for (auto const& token : {std::string(), std::string(".."), good + ".", std::string(large, '.'),
                            std::string(large, 'x'), std::string("\0.\0.\0", 5), " " + good,
                            signer().token(R"({"alg":"none","alg":"RS256","kid":"k"})", goodBody),
                            good.substr(0, good.find('.')) + "=" + good.substr(good.find('.'))}) {
    EXPECT_EQ(refusal(token), undecodable) << token.substr(0, 100);
  }
  EXPECT_EQ(fetches, 0);
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(20));
}

}  // namespace
}  // namespace vek
