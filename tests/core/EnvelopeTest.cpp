#include <gtest/gtest.h>

#include "service/Base64.h"
#include "service/Cipher.h"
#include "service/Envelope.h"
#include "service/URL.h"

namespace quilex::test {

using namespace std::literals;

// The cipher texts were made with OpenSSL's own program, for TEXT with the escapes of printf(1), where -K and -iv are
// the bytes of the two 16-character texts:
//   printf TEXT | openssl enc -aes-128-cbc -base64 -A -K 5271374c6d3256785439624b64345773
//   -iv 4863334e70385a7946366a5161315565

TEST(CipherTest, AgreesWithAnIndependentImplementation) {
  const std::pair<std::string, std::string> cases[] = {
      {"", "wsfPtRQacSAl6UZQ5oq7iw=="},
      {"sixteen bytes ok", "lovZczTFZJOHh3K+SXWtuTom84yfWQNexsTv4U29jYQ="},
      {"grüße € 🎬", "773TtkSqw5sihhopWykFIrD4DosRYN/jamKvQK2NsoY="}};
  for (const auto& [text, cipherText] : cases) {
    EXPECT_EQ(encryptToBase64(text), cipherText);
    EXPECT_EQ(decryptBase64ToString(cipherText), text);
  }
}

TEST(CipherTest, IllFormedCipherTextIsNothing) {
  for (const std::string cipherText :
       {"", "====", "wsfPtRQacSAl6UZQ5oq7iw", "wsfPtRQacSAl6UZQ5oq7iw==\n",
        "wsfPtRQacSAl6UZQ5oq7i=w=", "wsfPtRQacSAl6UZQ5oq-iw==", "wsfPtRQacSAl6UZQ5oq7",
        // Without padding (-nopad), and the bytes FF; C0 80; ED A0 80; F4 90 80 80; 61 62 63 E2 82.
        "lovZczTFZJOHh3K+SXWtuQ==", "vOlgfNnnqG6sivW3GoeWAQ==", "NgRNvn0uEWVtNnWMeAuCuw==", "nYzI5wPQb647bEVzJLOZ+g==",
        "4NS0H0ErMJ1jEDzAl75FFw==", "MRysMYHZGdOFTnIFiCk0Vw=="}) {
    EXPECT_FALSE(decryptBase64ToString(cipherText)) << cipherText;
  }
}

TEST(Base64Test, AnAlphabetOfItsOwnIsNotTakenNorWhatFollowsTheEnd) {
  EXPECT_EQ(base64Decode(base64Encode("\xfb\xff\xfe")), "\xfb\xff\xfe");
  EXPECT_FALSE(base64Decode("YW=="s + "\0\0\0\0"s));
}

TEST(EnvelopeTest, BodiesAndFormsAreExact) {
  const std::string body = envelope::heartbeatBody("1000", "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0", 0, "1.0.0.0", 2);
  EXPECT_EQ(body, R"({"n":"1000", "ui":"0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0","ct":"0","v":"1.0.0.0","type":"2",)"
                  R"("ismac":"1"})");
  EXPECT_EQ(envelope::guideBody("a\"b\\", "é"), "{\"ui\":\"a\"b\\\",\"v\":\"é\"}");
  // Of the body above with a backslash before each double quote.
  EXPECT_EQ(
      envelope::form(envelope::Function::heartbeat, body),
      "f=21&i=Sk/0QCgr%2BHysF98FtBEXryk%2BKPQrl7dikn07vjNRF2CjY3S2sELtiHEvLqABFuSpAtYNAcjkRleqVJLzfp/23GkBfl5XcVue"
      "z9I8clg15UWkmFi8cSZTZBZY5vfiDUeVDwOAbQbIe0FlpQskQcZpFf72Hf2bZpV/JBRWaFaQPCA%3D");
}

TEST(URLTest, FollowsTheGrammar) {
  for (const char* text :
       {"https://a.example/b?c=d&e=[f", "https://a.example/ b", "", "http://a.example/é", "a%zz", "1a:b", ":a",
        "http://a:b/", "http://[::1", "http://[]/", "a#b#c", "http://u@v@w/", "a[b]", "<a>", "a\"b", "a\nb"}) {
    EXPECT_FALSE(URL::parse(text)) << text;
  }
  for (const char* text : {"https://a.example/b?c=d&e=/?:@#f/?", "http://user:word@[::1]:8080/a%20b", "a", "/a//b:c",
                           "//host", "a.b-c+d:e@f", "file:///a", "?", "#", "http://a:/", "./a:b"}) {
    const auto url = URL::parse(text);
    ASSERT_TRUE(url) << text;
    EXPECT_EQ(url->string(), text);
  }
}

}  // namespace quilex::test
