#include "platform/linux/atspi/worker.h"

#include <pthread.h>

namespace glyma::atspi {

namespace {

/// Takes the source over; the job runs once.
void attach(GMainContext* context, GSource* source, std::function<void()> job) {
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(
        source,
        [](gpointer data) -> gboolean {
            (*static_cast<std::function<void()>*>(data))();
            return G_SOURCE_REMOVE;
        },
        new std::function(std::move(job)),
        [](gpointer data) { delete static_cast<std::function<void()>*>(data); });
    g_source_attach(source, context);
    g_source_unref(source);
}

} // namespace

Worker::Worker()
    : context_(g_main_context_new())
    , loop_(g_main_loop_new(context_.get(), FALSE)) {
    thread_ = std::thread([this] {
        pthread_setname_np(pthread_self(), "accessibility");
        g_main_context_push_thread_default(context_.get());
        g_main_loop_run(loop_.get());
        g_main_context_pop_thread_default(context_.get());
    });
}

Worker::~Worker() {
    // Quitting from inside the loop: it may not have begun to run yet.
    post([this] { g_main_loop_quit(loop_.get()); });
    thread_.join();
}

void Worker::post(GMainContext* context, std::function<void()> job) {
    attach(context, g_idle_source_new(), std::move(job));
}

void Worker::postAfter(Milliseconds delay, std::function<void()> job) const {
    attach(context_.get(), g_timeout_source_new(static_cast<guint>(delay.count())), std::move(job));
}

} // namespace glyma::atspi
