// An application with a window in C: it starts the library, is followed by it, and hears of a link by its delegate.
#include <gtk/gtk.h>
#include <stdbool.h>
#include <stdio.h>
#include <string.h>

#include "orbinel/gtk/orbinel_gtk.h"
#include "orbinel/orbinel_delegate.h"

static struct {
    bool heard;     // the application, of its link
    bool followed;  // the window, whose activation has opened a session
    bool presented;
    bool late;
} seen;

static bool openLink(void* data, const char* operation, const char* arguments,
                     const orbinel_completion_handler* handler) {
    (void)data, (void)handler;
    seen.heard =
        strcmp(operation, ORBINEL_OPEN_URL_WITH_OPTIONS) == 0 && strstr(arguments, "\"url\":\"shop://lamp\"") != NULL;
    return true;
}

static void presented(void* data, const char* problem) {
    (void)data;
    seen.presented = problem != NULL && *problem != '\0';  // this desktop has no portal
}

static gboolean connected(GSocketService* service, GSocketConnection* connection, GObject* source, gpointer data) {
    (void)service, (void)connection, (void)source, (void)data;
    seen.followed = true;
    return TRUE;
}

static gboolean giveUp(gpointer data) {
    (void)data;
    seen.late = true;
    return G_SOURCE_REMOVE;
}

static bool refuses(GtkWindow* window, const char* options, const char* why) {
    return orbinel_start_gtk(window, options) == NULL && strstr(orbinel_last_error(), why) != NULL;
}

int main(void) {
    GError* error = NULL;
    GSocketService* backend = g_socket_service_new();
    const guint16 port = g_socket_listener_add_any_inet_port(G_SOCKET_LISTENER(backend), NULL, NULL);
    g_signal_connect(backend, "incoming", G_CALLBACK(connected), NULL);
    GtkApplication* application =
        gtk_application_new("com.acme.CShop", G_APPLICATION_HANDLES_OPEN | G_APPLICATION_NON_UNIQUE);
    g_application_set_default(G_APPLICATION(application));
    if (!g_application_register(G_APPLICATION(application), NULL, &error)) return 77;

    GtkWindow* window = GTK_WINDOW(gtk_window_new());
    gtk_window_set_application(window, application);
    const bool refused =
        refuses(NULL, NULL, "window must not be NULL") && refuses(window, "{\"a\": 1}", "no option \"a\"");
    orbinel_gtk* host = orbinel_start_gtk(window, "{\"localisation\": \"en\"}");
    if (host == NULL) return fprintf(stderr, "%s\n", orbinel_last_error()), 1;
    orbinel_delegate* delegate = orbinel_delegate_create(NULL, NULL);
    orbinel_delegate_add_operation(delegate, ORBINEL_OPEN_URL_WITH_OPTIONS, openLink);
    orbinel_set_application_delegate(delegate);
    orbinel_delegate_free(delegate);
    char* origin = g_strdup_printf("http://127.0.0.1:%d", port);
    orbinel_init_with_launch_options_custom_endpoint(NULL, "acme", "group.acme", origin);
    orbinel_set_gdpr_consent(true);
    orbinel_set_mobile_gdpr_consent(true);

    gtk_window_present(window);
    GFile* link = g_file_new_for_uri("shop://lamp");
    g_application_open(G_APPLICATION(application), &link, 1, "");
    orbinel_gtk_present(host, "{\"title\": \"Lamp\", \"user_info\": {}}", presented, NULL, NULL);
    g_timeout_add_seconds(20, giveUp, NULL);
    while (!seen.late && !(seen.heard && seen.followed && seen.presented)) g_main_context_iteration(NULL, TRUE);
    printf("refused %d, heard %d, followed %d, presented %d\n", refused, seen.heard, seen.followed, seen.presented);

    orbinel_shutdown();
    orbinel_gtk_free(host);
    return refused && !seen.late ? 0 : 1;
}
