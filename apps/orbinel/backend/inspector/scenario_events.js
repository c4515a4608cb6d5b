import {listOr, objectOr, textOr} from './format.js';
import {call, isInt32, isPlain, isText, typedCall} from './scenario_steps.js';

// Events of a session as what the application, a person or a push did to cause them.

const productEvents = {
  product_detail_page_view: product => call('visitProductDetailPageWithProduct:', product),
  item_added_to_cart: product => call('itemAddedToCartWithProduct:', product),
  item_added_to_wishlist: product => call('itemAddedToWishlistWithProduct:', product),
  cart_page_view: product => call('visitCartPageWithProducts:', [product]),
  wishlist_page_view: product => call('visitWishlistWithProducts:', [product]),
  confirmation_page_view: (product, parameters) => call('itemPurchasedWithSaleID:product:', textOr(parameters.e_guid), product),
};
const plainEvents = {
  homepage_view: () => call('visitHomepage'),
  listing_page_view: parameters => call('visitListingPageWithTaxonomy:', listOr(parameters.ta).filter(isText)),
  item_removed_from_cart: parameters => call('itemRemovedFromCartWithProductID:', textOr(parameters.pid)),
  item_removed_from_wishlist: parameters => call('itemRemovedFromWishlistWithProductID:', textOr(parameters.pid)),
  cart_cleared: () => call('cartCleared'),
  wishlist_clear: () => call('wishlistCleared'),
  sign_up_confirmation: () => call('signUpConfirmation'),
};
// The library records these itself, as parts of what the other steps do.
const ownEvents = new Set(['session_start', 'inapp_seen', 'session_start_from_push']);

const isNumber = value => typeof value === 'number';
const isBoolean = value => typeof value === 'boolean';
const productSetters = {
  qu: ['setQuantity', isInt32], usp: ['setSalePrice', isNumber], st: ['setStock', isInt32], iis: ['setInStock', isBoolean],
  co: ['setColor', isText], si: ['setSize', isText], sc: ['setShippingCost', isNumber], vn: ['setVoucherName', isText],
  vd: ['setVoucherDiscount', isNumber], pn: ['setPromotionName', isText], pd: ['setPromotionDiscount', isNumber],
  groupcode: ['setGroupCode', isText], e_guid: ['setSaleID', isText],
};
const creation = new Set(['pid', 'na', 'ta', 'piu', 'up', 'cu']);

/** Makes the steps of events, one after the other. `notes` gets what they cannot tell. */
export class EventSteps {
  constructor({answer, deliveries, notes}) {
    this.addresses = objectOr(answer.smart_recommendations);
    this.deliveries = deliveries;  // of the pushes, in order: "response" or "present"
    this.notes = notes;
    this.products = new Map();
  }

  of(name, parameters) {
    if (!name || ownEvents.has(name)) return [];
    if (name === 'push_session') return this.push(parameters);
    if (name === 'mobile_recommendation_log') return this.recommendation(parameters);
    if (Object.hasOwn(plainEvents, name)) return [plainEvents[name](parameters)];
    if (Object.hasOwn(productEvents, name) && isProduct(parameters)) {
      const {e_guid: sale, ...rest} = parameters;
      const {reference, steps} = this.product(name === 'confirmation_page_view' ? rest : parameters);
      return [...steps, productEvents[name]({$ref: reference}, parameters)];
    }
    const given = Object.entries(parameters).flatMap(([key, value]) => typedCall('addParameterWith', key, value));
    return [{...call('tagEvent:', name), then: [...given, call('build')]}];
  }

  product(parameters) {
    const key = JSON.stringify(parameters);
    if (this.products.has(key)) return {reference: this.products.get(key), steps: []};
    const reference = 'product-' + (this.products.size + 1);
    this.products.set(key, reference);
    const then = Object.entries(parameters).flatMap(([code, value]) => productCall(code, value));
    return {reference, steps: [{
      ...call('createNewProductWithID:name:taxonomy:imageURL:price:currency:', parameters.pid, parameters.na, parameters.ta.filter(isText),
              parameters.piu, parameters.up, parameters.cu),
      as: reference, ...(then.length > 0 ? {then} : {})}]};
  }

  push(parameters) {
    const campaign = Object.fromEntries(Object.entries(parameters).filter(([, value]) => isPlain(value)));
    const via = this.deliveries.shift() ?? 'response';
    this.notes.add('Of a push only its campaign arrives: not its text, its link, and whether it was opened or came while the application was in the foreground.');
    return [{push: {...campaign, aps: {alert: 'A push'}, source: 'Orbinel'}, via}];
  }

  /** Views and clicks are the application's; what else is attributed to a recommendation follows from its cart. */
  recommendation({recommendation_id: id, action, request_url: address, ...product}) {
    if (!isInt32(id)) return [];
    if (action === 'click' && isProduct(product)) {
      const {reference, steps} = this.product(product);
      return [...steps, call('clickSmartRecommendationProductWithID:product:', id, {$ref: reference})];
    }
    return action === 'view' ? [...this.viewOf(id, textOr(address)), {settle: 5}] : [];
  }

  /** A request for recommendations that was refused leaves no event. */
  refusedRecommendation({method, status, path, query}) {
    if (method !== 'GET' || status < 300 || !query) return [];
    const found = Object.entries(this.addresses).find(([id, template]) => isInt32(Number(id)) && leadsTo(textOr(template), path, query));
    return found ? [...this.viewOf(Number(found[0]), path + '?' + query), {settle: 5}] : [];
  }

  viewOf(id, address) {
    const {language, currency, productID: products} = filledIn(textOr(this.addresses[id]), address);
    if (!products) return [call('getSmartRecommendationWithID:locale:currency:smartRecommendation:', id, language ?? 'en', currency ?? 'EUR', null)];
    const {reference, steps} = this.product({pid: products, na: 'A product', ta: categoriesIn(address), piu: 'https://shop.example/product.png', up: 1, cu: currency || 'EUR'});
    if (!products.includes(',')) {
      this.notes.add('Of the product that a recommendation was asked for, only its ID and its categories arrive.');
      return [...steps, call('getSmartRecommendationWithProduct:recommendationID:locale:smartRecommendation:', {$ref: reference}, id, language ?? 'en', null)];
    }
    return [call('getSmartRecommendationWithProductIDs:recommendationID:locale:currency:smartRecommendation:', products.split(','), id, language ?? 'en', currency ?? 'EUR', null)];
  }
}

function productCall(code, value) {
  if (creation.has(code) || (code === 'qu' && value === 1)) return [];
  if (!Object.hasOwn(productSetters, code)) return typedCall('setCustomAttributeWith', code, value);
  const [setter, fits] = productSetters[code];
  return fits(value) ? [call(setter, value)] : [];
}

function isProduct(parameters) {
  return [parameters.pid, parameters.na, parameters.piu, parameters.cu].every(isText) && typeof parameters.up === 'number' && Array.isArray(parameters.ta);
}

/** Whether an address made of the template has this path and all of its fixed parameters. */
function leadsTo(template, path, query) {
  const [place, placed] = template.split('?');
  const found = new URLSearchParams(query);
  return place.endsWith(path) && [...new URLSearchParams(placed ?? '')].every(([name, value]) => /[{}[\]]/.test(value) || found.get(name) === value);
}

/** What stands in an address for the placeholders of its template, both with their parameters by name. */
function filledIn(template, address) {
  const placed = new URLSearchParams(template.split('?')[1] ?? '');
  const found = new URLSearchParams(address.split('?')[1] ?? '');
  return Object.fromEntries([...placed].filter(([, value]) => /^\{\w+\}$/.test(value)).map(([name, value]) => [value.slice(1, -1), found.get(name) ?? undefined]));
}

/** Those of a category filter, "[category][=][Mugs]*…", or of a list in JSON. */
function categoriesIn(address) {
  const text = new URLSearchParams(address.split('?')[1] ?? '');
  const filtered = [...(text.get('filter') ?? '').matchAll(/\[=\]\[([^\]]*)\]/g)].map(([, category]) => category);
  return filtered.length > 0 ? filtered : ['A category'];
}
