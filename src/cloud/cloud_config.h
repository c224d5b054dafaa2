#pragma once
#include <string>

namespace sodam {

// Where the cloud lives. The hosts are deployment settings: the build gives
// the project's defaults (CMake cache variables), tests and the simulation
// point every host at a loopback double. A host is a scheme and authority
// without a trailing slash, such as "https://example.org" or
// "http://127.0.0.1:8080".
struct CloudConfig {
  std::string apiKey;  // the public web API key; no secret beyond it is shipped
  std::string project = "sodamjari";
  std::string loginHost;      // serves login.html and join.html
  std::string tokenHost;      // the token service
  std::string documentsHost;  // the document database service

  // The settings the build was configured with.
  static CloudConfig built();
  // Every host at http://127.0.0.1:{port}.
  static CloudConfig loopback(int port);

  std::string loginPage() const;  // {loginHost}/login.html
  std::string joinPage() const;   // {loginHost}/join.html
  std::string tokenUrl() const;   // {tokenHost}/v1/token?key={apiKey}
  // The database's documents as a URL: {documentsHost}/v1/{documentsName()}.
  std::string documents() const;
  // The documents root as the database names it inside requests:
  // "projects/{project}/databases/(default)/documents".
  std::string documentsName() const;
};

}  // namespace sodam
