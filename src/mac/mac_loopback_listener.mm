#include <Network/Network.h>
#include <dispatch/dispatch.h>

#include <algorithm>
#include <memory>

#include "mac/mac_cloud.h"

namespace sodam {

namespace {

// One connection read chunk by chunk into its request, then answered and
// closed; a dropped request is closed without an answer.
void receive(nw_connection_t connection, std::shared_ptr<LoopbackRequest> request,
             std::shared_ptr<LoopbackListener::Events> events) {
  nw_connection_receive(
      connection, 1, LoopbackRequest::limitBytes,
      ^(dispatch_data_t content, nw_content_context_t, bool complete, nw_error_t error) {
        __block std::string chunk;
        if (content)
          dispatch_data_apply(content,
                              ^bool(dispatch_data_t, size_t, const void* bytes, size_t size) {
                                chunk.append(static_cast<const char*>(bytes), size);
                                return true;
                              });
        switch (request->feed(chunk, complete || error != nullptr)) {
          case LoopbackRequest::Next::read:
            receive(connection, request, events);
            return;
          case LoopbackRequest::Next::drop:
            nw_connection_cancel(connection);
            return;
          case LoopbackRequest::Next::answer: {
            const std::string page = events->exchange(*request);
            dispatch_data_t bytes = dispatch_data_create(page.data(), page.size(), nullptr,
                                                         DISPATCH_DATA_DESTRUCTOR_DEFAULT);
            nw_connection_send(connection, bytes, NW_CONNECTION_DEFAULT_MESSAGE_CONTEXT, true,
                               ^(nw_error_t) {
                                 nw_connection_cancel(connection);
                               });
            return;
          }
        }
      });
}

class MacLoopbackListener final : public LoopbackListener {
 public:
  MacLoopbackListener()
      : queue_(dispatch_queue_create("kr.lumenfold.sodamjari.loopback", DISPATCH_QUEUE_SERIAL)) {}
  ~MacLoopbackListener() override { stop(); }

  void start(Events events) override {
    auto shared = std::make_shared<Events>(std::move(events));
    nw_parameters_t parameters = nw_parameters_create_secure_tcp(
        NW_PARAMETERS_DISABLE_PROTOCOL, NW_PARAMETERS_DEFAULT_CONFIGURATION);
    nw_parameters_set_local_endpoint(parameters, nw_endpoint_create_host("127.0.0.1", "0"));
    listener_ = nw_listener_create(parameters);
    if (!listener_) {
      dispatch_async(queue_, ^{
        shared->ready(std::nullopt);
      });
      return;
    }
    nw_listener_t listener = listener_;
    nw_listener_set_queue(listener, queue_);
    nw_listener_set_state_changed_handler(listener, ^(nw_listener_state_t state, nw_error_t) {
      if (state == nw_listener_state_failed) shared->ready(std::nullopt);
      if (state == nw_listener_state_ready) shared->ready(nw_listener_get_port(listener));
    });
    dispatch_queue_t queue = queue_;
    nw_listener_set_new_connection_handler(listener, ^(nw_connection_t connection) {
      nw_connection_set_queue(connection, queue);
      nw_connection_start(connection);
      receive(connection, std::make_shared<LoopbackRequest>(), shared);
    });
    nw_listener_start(listener);
  }

  void stop() override {
    if (listener_) nw_listener_cancel(listener_);
    listener_ = nil;
  }

 private:
  dispatch_queue_t queue_;
  nw_listener_t listener_ = nil;
};

}  // namespace

std::unique_ptr<LoopbackListener> makeMacLoopbackListener() {
  return std::make_unique<MacLoopbackListener>();
}

}  // namespace sodam
