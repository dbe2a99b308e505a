#pragma once

#include <memory>
#include <openssl/evp.h>
#include <openssl/x509.h>
#include <string>

namespace velmora::testing {

/// A certificate for 127.0.0.1 that nobody but itself has signed, valid for a day, with its key.
class Certificate {
 public:
  Certificate();

  X509* x509() const { return x509_.get(); }
  EVP_PKEY* key() const { return key_.get(); }
  std::string pem() const;

 private:
  std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key_;
  std::unique_ptr<X509, decltype(&X509_free)> x509_;
};

}  // namespace velmora::testing
