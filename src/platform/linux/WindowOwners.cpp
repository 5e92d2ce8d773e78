#include "platform/linux/WindowOwners.h"

namespace harbor {
namespace {

std::int32_t processIn(const xcb_res_query_client_ids_reply_t* reply) {
  if (!reply) return 0;
  for (auto ids = xcb_res_query_client_ids_ids_iterator(reply); ids.rem > 0;
       xcb_res_client_id_value_next(&ids)) {
    if ((ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) &&
        xcb_res_client_id_value_value_length(ids.data) > 0)
      return static_cast<std::int32_t>(*xcb_res_client_id_value_value(ids.data));
  }
  return 0;
}

}  // namespace

WindowOwners::WindowOwners(XcbConnection& connection) : connection_(connection) {
  const auto* extension = xcb_get_extension_data(connection_.get(), &xcb_res_id);
  if (!extension || !extension->present) return;
  const auto cookie = xcb_res_query_version(connection_.get(), 1, 2);
  const XcbOwned<xcb_res_query_version_reply_t> version(
      xcb_res_query_version_reply(connection_.get(), cookie, nullptr));
  serverKnows_ = version && (version->server_major > 1 || version->server_minor >= 2);
}

WindowOwners::Question WindowOwners::ask(xcb_window_t window) const {
  Question question{};
  auto* xcb = connection_.get();
  question.claim = xcb_get_property(xcb, 0, window, connection_.atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 0, 1);
  if (serverKnows_) {
    const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    question.client = xcb_res_query_client_ids(xcb, 1, &spec);
  }
  return question;
}

std::int32_t WindowOwners::answer(const Question& question) const {
  const XcbOwned<xcb_get_property_reply_t> claim(
      xcb_get_property_reply(connection_.get(), question.claim, nullptr));
  if (serverKnows_) {
    const XcbOwned<xcb_res_query_client_ids_reply_t> client(
        xcb_res_query_client_ids_reply(connection_.get(), question.client, nullptr));
    if (const std::int32_t process = processIn(client.get())) return process;
  }
  const auto property = xPropertyOf(claim.get());
  const auto words = property ? property->words() : std::vector<std::uint32_t>();
  return words.empty() || words.front() > INT32_MAX ? 0 : static_cast<std::int32_t>(words.front());
}

}  // namespace harbor
