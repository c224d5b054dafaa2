#include "cloud/cloud_config.h"

#include "support/text.h"

// The build's defaults; CMake's cache variables of the same names set them.
#ifndef SODAM_CLOUD_API_KEY
#define SODAM_CLOUD_API_KEY ""
#endif
#ifndef SODAM_CLOUD_LOGIN_HOST
#define SODAM_CLOUD_LOGIN_HOST "https://sodamjari.web.app"
#endif
#ifndef SODAM_CLOUD_TOKEN_HOST
#define SODAM_CLOUD_TOKEN_HOST "https://securetoken.googleapis.com"
#endif
#ifndef SODAM_CLOUD_DOCUMENTS_HOST
#define SODAM_CLOUD_DOCUMENTS_HOST "https://firestore.googleapis.com"
#endif

namespace sodam {

CloudConfig CloudConfig::built() {
  CloudConfig config;
  config.apiKey = SODAM_CLOUD_API_KEY;
  config.loginHost = SODAM_CLOUD_LOGIN_HOST;
  config.tokenHost = SODAM_CLOUD_TOKEN_HOST;
  config.documentsHost = SODAM_CLOUD_DOCUMENTS_HOST;
  return config;
}

CloudConfig CloudConfig::loopback(int port) {
  CloudConfig config;
  config.apiKey = "loopback-key";
  config.loginHost = config.tokenHost = config.documentsHost = format("http://127.0.0.1:%d", port);
  return config;
}

std::string CloudConfig::loginPage() const {
  return loginHost + "/login.html";
}

std::string CloudConfig::joinPage() const {
  return loginHost + "/join.html";
}

std::string CloudConfig::tokenUrl() const {
  return tokenHost + "/v1/token?key=" + apiKey;
}

std::string CloudConfig::documentsName() const {
  return "projects/" + project + "/databases/(default)/documents";
}

std::string CloudConfig::documents() const {
  return documentsHost + "/v1/" + documentsName();
}

}  // namespace sodam
