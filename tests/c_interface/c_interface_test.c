// The C interface from C, over the host without a platform: one run is one process, as in an application.
#include <math.h>
#include <pthread.h>
#include <stdatomic.h>
#include <stdio.h>
#include <string.h>

#include "orbinel/headless/orbinel_headless.h"
#include "orbinel/linux/orbinel_linux.h"
#include "orbinel/orbinel.h"

static int failures = 0;

static void check(bool holds, const char* what, int line) {
    if (holds) return;
    fprintf(stderr, "line %d: does not hold: %s\n", line, what);
    ++failures;
}
#define CHECK(condition) check((condition), #condition, __LINE__)

/* Whether the text, which is freed, is there and contains the part. */
static bool has(char* text, const char* part) {
    const bool found = text != NULL && strstr(text, part) != NULL;
    if (!found) fprintf(stderr, "not in %s:\n", text != NULL ? text : "(null)");
    orbinel_free(text);
    return found;
}

static bool is(char* text, const char* other) {
    const bool same = text != NULL && strcmp(text, other) == 0;
    if (!same) fprintf(stderr, "%s is not:\n", text != NULL ? text : "(null)");
    orbinel_free(text);
    return same;
}

static bool errorHas(const char* part) {
    const char* error = orbinel_last_error();
    const bool found = error != NULL && strstr(error, part) != NULL;
    if (!found) fprintf(stderr, "the last error is: %s\n", error != NULL ? error : "(null)");
    return found;
}

/* What a callback was given, and how often it was let go of. Callbacks may come on any thread. */
typedef struct {
    atomic_int calls;
    atomic_int destroyed;
    char latest[500];
} Listener;

static void listen(void* data, const char* text) {
    Listener* listener = data;
    snprintf(listener->latest, sizeof listener->latest, "%s", text);
    atomic_fetch_add(&listener->calls, 1);
}
static void complete(void* data) { atomic_fetch_add(&((Listener*)data)->calls, 1); }
static void letGo(void* data) { atomic_fetch_add(&((Listener*)data)->destroyed, 1); }

static bool was(const Listener* listener, int calls, int destroyed) {
    const int called = atomic_load(&listener->calls);
    const int gone = atomic_load(&listener->destroyed);
    if (called != calls || gone != destroyed) fprintf(stderr, "%d calls, let go %d times\n", called, gone);
    return called == calls && gone == destroyed;
}

static orbinel_headless* launch(void) {
    orbinel_headless* host = orbinel_start_headless("{\"start\": 1767225600}");
    CHECK(host != NULL);
    orbinel_headless_answer(host, "", 200, "{}");
    orbinel_set_development_log(true);
    orbinel_init_with_launch_options_custom_endpoint("{}", "acme", "group.acme", "http://backend");
    orbinel_set_gdpr_consent(true);
    orbinel_set_mobile_gdpr_consent(true);
    return host;
}

static void end(orbinel_headless* host) {
    orbinel_shutdown();
    orbinel_headless_free(host);
}

static void nothingHappensWithoutTheLibrary(void) {
    Listener listener = {0};
    orbinel_event* event = orbinel_tag_event("early");
    orbinel_event_add_parameters(event, "{\"a\": 1}");
    CHECK(errorHas("orbinel_event_add_parameters: the library is not started"));
    orbinel_event_build(event);
    CHECK(orbinel_last_error() == NULL);
    CHECK(is(orbinel_event_get_name(event), ""));
    orbinel_event_free(event);
    orbinel_get_smart_recommendation_with_id(1, "en", "EUR", listen, &listener, letGo);
    CHECK(was(&listener, 0, 1));
    CHECK(is(orbinel_get_content_string_with_name("title", "Hello", ORBINEL_VARIABLE_TYPE_CONTENT), "Hello"));
    CHECK(orbinel_get_content_int_with_name("n", 7, 0) == 7);
    CHECK(orbinel_get_orbinel_id() == NULL);
    CHECK(is(orbinel_get_sdk_version(), "13.9.0"));
    orbinel_shutdown();
}

static void whatIsToldLeavesTheDevice(void) {
    Listener started = {0};
    orbinel_headless* host = launch();
    orbinel_sender* sender = orbinel_sender_create(&started, letGo);
    orbinel_register_orbinel_callback_with_selector(listen, sender);
    orbinel_headless_did_become_active(host);
    orbinel_headless_settle(host);
    CHECK(was(&started, 1, 0));
    CHECK(strcmp(started.latest, "{\"type\":6}") == 0);

    const double moment = 0.25;
    orbinel_event* event = orbinel_tag_event("purchase");
    orbinel_event_add_parameter_with_string(event, "sku", "\xC3\xA4");
    orbinel_event_add_parameter_with_int(event, "count", 3);
    orbinel_event_add_parameter_with_double(event, "bad", NAN);
    orbinel_event_add_parameter_with_boolean(event, "gift", true);
    orbinel_event_add_parameter_with_date(event, "at", &moment);
    orbinel_event_add_parameter_with_array(event, "tags", "[\"x\", 1, \"y\"]");
    orbinel_event_add_parameters(event, "{\"minus\": -3, \"then\": {\"$date\": 1}, \"raw\": {\"$bytes\": \"41\"}}");
    CHECK(orbinel_last_error() == NULL);
    CHECK(
        is(orbinel_event_get_parameters(event),
           "{\"sku\":\"\xC3\xA4\",\"count\":3,\"gift\":true,\"at\":\"1970-01-01T00:00:00.250Z\",\"tags\":[\"x\",\"y\"],"
           "\"minus\":-3,\"then\":\"1970-01-01T00:00:01.000Z\",\"raw\":\"A\"}"));
    orbinel_event* copy = orbinel_event_copy(event);
    orbinel_event_add_parameter_with_int(copy, "more", 1);
    orbinel_event_build(event);
    orbinel_event_free(copy);
    orbinel_event_free(event);
    CHECK(has(orbinel_headless_console_lines(host), "name: \\\"sku\\\", value: \\\"\xC3\xA4\\\""));

    orbinel_headless_advance(host, 5);
    orbinel_headless_did_enter_background(host);
    orbinel_headless_settle(host);
    CHECK(has(orbinel_headless_requests(host), "\"url\":\"http://backend/api/v3/session/stop\""));

    orbinel_sender_free(sender);
    CHECK(was(&started, 1, 1));
    orbinel_headless_did_become_active(host);
    orbinel_headless_settle(host);
    CHECK(was(&started, 1, 1));
    end(host);
}

static void wrongTextsAreExplained(void) {
    CHECK(orbinel_start_headless("{\"begin\": 1}") == NULL);
    CHECK(errorHas("orbinel_start_headless: there is no option \"begin\"."));
    CHECK(orbinel_start_linux("{\"url_schemes\": [1]}") == NULL);
    CHECK(errorHas("the option url_schemes must be an array of texts."));
    orbinel_headless* host = launch();
    CHECK(orbinel_start_headless(NULL) == NULL);
    CHECK(errorHas("orbinel_start_headless: the library is already started."));

    orbinel_event* event = orbinel_event_create("e");
    orbinel_event_add_parameters(event, "{\"a\": 1");
    CHECK(errorHas("orbinel_event_add_parameters: parameters is not valid JSON at byte 7: "));
    orbinel_event_add_parameters(event, "[]");
    CHECK(errorHas("parameters must be a JSON object."));
    orbinel_event_add_parameter_with_array(event, "k", "{}");
    CHECK(errorHas("orbinel_event_add_parameter_with_array: value must be a JSON array."));
    orbinel_event_add_parameters(event, "{\"a\": [0, {\"$date\": \"x\"}]}");
    CHECK(errorHas("parameters, at /a/1: $date takes the seconds since 1970"));
    CHECK(is(orbinel_event_get_parameters(event), "{}"));
    orbinel_event_add_parameters(event, "{\"\xC3\x28\": 1}");
    CHECK(errorHas("is not valid JSON"));

    char deep[2001] = {0};
    memset(deep, '[', 1000);
    orbinel_visit_listing_page_with_taxonomy(deep);
    CHECK(errorHas("nests too deep"));
    char longKey[2100] = "{\"";
    for (int i = 0; i < 1000; ++i) strcat(longKey, "\xC3\xA4");
    strcat(longKey, "\": {\"$bytes\": 1}}");
    orbinel_event_add_parameters(event, longKey);
    const char* error = orbinel_last_error();
    CHECK(strlen(error) < 500 && memcmp(error + strlen(error) - 2, "\xC3\xA4", 2) == 0);
    orbinel_event_free(event);
    CHECK(orbinel_last_error() == error && *error != '\0');

    CHECK(orbinel_create_new_product_with_id("p", "P", "nonsense", "https://s/1.png", 1, "EUR") == NULL);
    orbinel_product* invalid = orbinel_create_new_product_with_id("p", "P", "[]", "https://s/1.png", 1, "EUR");
    CHECK(invalid != NULL && !orbinel_product_is_product_valid(invalid));
    orbinel_product_free(invalid);
    end(host);
}

static void callbacksAreLetGoOfOnce(void) {
    enum { count = 7 };
    Listener l[count] = {0};
    orbinel_headless* host = launch();

    orbinel_sender* sender = orbinel_sender_create(&l[0], letGo);
    orbinel_register_orbinel_id_listener_with_selector(listen, sender);
    orbinel_set_foreground_push_callback(listen, sender);
    orbinel_register_orbinel_callback_with_selector(listen, sender);
    orbinel_register_orbinel_callback_with_selector(listen, NULL); /* takes the place of the one before */
    orbinel_headless_did_become_active(host);
    orbinel_headless_settle(host);
    CHECK(was(&l[0], 0, 0));

    const double from = 0;
    orbinel_get_message_center_data_with_limit(10, &from, NULL, listen, &l[1], letGo);
    CHECK(was(&l[1], 1, 1) && strcmp(l[1].latest, "[]") == 0);
    orbinel_remove_inapp_with_completion_handler(complete, &l[2], letGo);
    orbinel_headless_settle(host);
    CHECK(was(&l[2], 1, 1));
    orbinel_get_smart_recommendation_with_product_ids("no", 1, "en", "EUR", listen, &l[3], letGo);
    CHECK(was(&l[3], 0, 1));
    orbinel_get_smart_recommendation_with_product(NULL, 1, "en", NULL, &l[4], letGo);
    CHECK(was(&l[4], 0, 1));

    orbinel_user* user = orbinel_get_current_user();
    orbinel_identifiers* identifiers = orbinel_identifiers_create();
    orbinel_identifiers_add_email(identifiers, "ada@example.org");
    CHECK(is(orbinel_identifiers_get_orbinel_identifiers(identifiers), "{\"em\":\"ada@example.org\"}"));
    orbinel_user_login_orbinel_id_result(user, identifiers, listen, &l[5], letGo);
    orbinel_user_login_orbinel_id_result(NULL, identifiers, listen, &l[6], letGo);
    orbinel_headless_settle(host);
    CHECK(was(&l[5], 0, 1) && was(&l[6], 0, 1)); /* the answer has no ID */

    end(host);
    CHECK(was(&l[0], 0, 0));
    orbinel_sender_free(sender);
    CHECK(was(&l[0], 0, 1));

    orbinel_user_set_name(user, "gone");
    CHECK(orbinel_identifiers_get_orbinel_identifiers(identifiers) == NULL);
    orbinel_identifiers_free(identifiers);
    orbinel_user_free(user);
}

static void productsAreWhatTheyAreTold(void) {
    orbinel_headless* host = launch();
    orbinel_product* shoe =
        orbinel_create_new_product_with_id("shoe", "Shoe", "[\"Sport\"]", "https://s/1.png", 59.5, "EUR");
    orbinel_product_set_quantity(shoe, 2);
    orbinel_product_set_custom_attribute_with_int(shoe, "size", 42);
    orbinel_product_set_custom_attribute_with_array(shoe, "tags", "[\"new\"]");
    int32_t number = 0;
    bool flag = false;
    double real = 0;
    CHECK(orbinel_product_is_product_valid(shoe) && orbinel_product_get_quantity(shoe) == 2);
    CHECK(orbinel_product_get_custom_attribute_int(shoe, "size", &number) && number == 42);
    CHECK(orbinel_product_get_custom_attribute_int(shoe, "size", NULL));
    CHECK(orbinel_product_get_custom_attribute_double(shoe, "size", &real) && real == 42);
    CHECK(!orbinel_product_get_custom_attribute_boolean(shoe, "size", &flag));
    CHECK(orbinel_product_get_custom_attribute_string(shoe, "size") == NULL && orbinel_last_error() == NULL);
    CHECK(is(orbinel_product_get_custom_attribute_array(shoe, "tags"), "[\"new\"]"));
    CHECK(is(orbinel_product_get_taxonomy(shoe), "[\"Sport\"]"));

    const orbinel_product* cart[] = {shoe, NULL};
    orbinel_visit_cart_page_with_products(cart, 2);
    orbinel_visit_cart_page_with_products(cart, SIZE_MAX);
    CHECK(errorHas("orbinel_visit_cart_page_with_products: "));
    orbinel_item_purchased_with_sale_id("sale-1", shoe);
    CHECK(has(orbinel_product_get_product_summary(shoe), "\"sale-1\""));
    end(host);
    CHECK(!orbinel_product_is_product_valid(shoe));
    orbinel_product_free(shoe);
}

static atomic_bool stopping;

static void* useEverything(void* shared) {
    const orbinel_sender* sender = shared;
    while (!atomic_load(&stopping)) {
        Listener own = {0};
        orbinel_event* event = orbinel_tag_event("from_thread");
        orbinel_event_add_parameters(event, "{\"a\": {\"$double\": 1}}");
        orbinel_event_build(event);
        orbinel_free(orbinel_event_get_parameters(event));
        orbinel_event_free(event);
        orbinel_register_orbinel_callback_with_selector(listen, sender);
        orbinel_user* user = orbinel_get_current_user();
        orbinel_user_set_custom_attribute_with_array(user, "k", "wrong");
        orbinel_user_free(user);
        orbinel_get_message_center_data_with_limit(1, NULL, NULL, listen, &own, letGo);
        check(atomic_load(&own.destroyed) == 1, "a callback is let go of", __LINE__);
    }
    return NULL;
}

static void threadsCallWhileItComesAndGoes(void) {
    Listener shared = {0};
    orbinel_sender* sender = orbinel_sender_create(&shared, letGo);
    pthread_t threads[3];
    for (int i = 0; i < 3; ++i) pthread_create(&threads[i], NULL, useEverything, sender);
    for (int round = 0; round < 5; ++round) {
        orbinel_headless* host = launch();
        orbinel_headless_did_become_active(host);
        orbinel_headless_settle(host);
        orbinel_headless_will_terminate(host);
        end(host);
    }
    atomic_store(&stopping, true);
    for (int i = 0; i < 3; ++i) pthread_join(threads[i], NULL);
    orbinel_sender_free(sender);
    CHECK(atomic_load(&shared.destroyed) == 1);
}

int main(void) {
    nothingHappensWithoutTheLibrary();
    whatIsToldLeavesTheDevice();
    wrongTextsAreExplained();
    callbacksAreLetGoOfOnce();
    productsAreWhatTheyAreTold();
    threadsCallWhileItComesAndGoes();
    if (failures == 0) puts("all held");
    return failures == 0 ? 0 : 1;
}
