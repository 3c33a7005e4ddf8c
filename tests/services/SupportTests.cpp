// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include "platform/Files.hpp"
#include "services/support/CertificateAuthority.hpp"
#include "services/support/HTTPMessage.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek::test {

namespace {

using services::CertificateAuthority;
using testing::ElementsAre;
using testing::Pair;

TEST(CertificateAuthority, RenewsWhatIsNearItsEndOrDamaged) {
  TemporaryFolder folder;
  auto const now = std::chrono::system_clock::now();
  auto const filesAfter = [&](std::chrono::days time) {
    CertificateAuthority const authority(folder.path(), now + time);
    return std::pair(*readFile(authority.certificate()), *readFile(authority.serverCertificate()));
  };
  auto const first = filesAfter(std::chrono::days(0));
  EXPECT_EQ(filesAfter(std::chrono::days(300)), first);

  auto const renewed = filesAfter(std::chrono::days(370));
  EXPECT_EQ(renewed.first, first.first);
  EXPECT_NE(renewed.second, first.second);

  replaceFile(folder / "server-key.pem", "damaged");
  auto const repaired = filesAfter(std::chrono::days(370));
  EXPECT_EQ(repaired.first, first.first);
  EXPECT_NE(repaired.second, renewed.second);

  auto const anew = filesAfter(std::chrono::days(3640));
  EXPECT_NE(anew.first, first.first);
}

X509* certificate(std::string const& pem) {
  BIO* memory = BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size()));
  X509* result = PEM_read_bio_X509(memory, nullptr, nullptr, nullptr);
  BIO_free(memory);
  return result;
}

TEST(CertificateAuthority, CanVouchForNoOtherHost) {
  TemporaryFolder folder;
  CertificateAuthority const authority(folder.path());
  X509* const own = certificate(*readFile(authority.certificate()));
  X509* const server = certificate(*readFile(authority.serverCertificate()));
  auto* const constraints =
      static_cast<NAME_CONSTRAINTS*>(X509_get_ext_d2i(own, NID_name_constraints, nullptr, nullptr));
  ASSERT_NE(constraints, nullptr);
  X509_check_purpose(server, -1, 0);  // reads the names, which the check below compares
  EXPECT_EQ(NAME_CONSTRAINTS_check(server, constraints), X509_V_OK);

  X509* const forged = X509_dup(server);
  X509_EXTENSION_free(
      X509_delete_ext(forged, X509_get_ext_by_NID(forged, NID_subject_alt_name, -1)));
  X509_EXTENSION* const name =
      X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "DNS:example.com");
  X509_add_ext(forged, name, -1);
  X509_check_purpose(forged, -1, 0);
  EXPECT_EQ(NAME_CONSTRAINTS_check(forged, constraints), X509_V_ERR_PERMITTED_VIOLATION);

  X509_EXTENSION_free(name);
  NAME_CONSTRAINTS_free(constraints);
  for (X509* each : {own, server, forged}) X509_free(each);
}

TEST(Target, IsTakenApartAndDecoded) {
  services::Request request;
  ASSERT_TRUE(services::readTarget("/a%20b?x=1%262&y&x=3&&=z", request));
  EXPECT_EQ(request.path, "/a b");
  EXPECT_THAT(request.query, ElementsAre(Pair("x", "1&2"), Pair("y", ""), Pair("x", "3"),
                                         Pair("", ""), Pair("", "z")));
  EXPECT_EQ(request.queryItem("x"), "1&2");
  EXPECT_EQ(request.queryItem("z"), std::nullopt);
  for (auto const* malformed : {"", "a", "/%", "/%4", "/%4g", "/?a=%"}) {
    EXPECT_FALSE(services::readTarget(malformed, request)) << malformed;
  }
}

}  // namespace

}  // namespace vek::test
