// An address and not a name: a machine without a hosts file does not know localhost.
export default { server: { host: '127.0.0.1' } };
