<?xml version="1.0"?>
<!-- Joins orders to customers and products through keys, with totals. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
                xmlns:exsl="http://exslt.org/common" exclude-result-prefixes="exsl">
  <xsl:key name="customer" match="customer" use="@id"/>
  <xsl:key name="product" match="product" use="@sku"/>
  <xsl:key name="orders-of" match="order" use="@customer"/>
  <xsl:template match="/shop">
    <invoices>
      <xsl:for-each select="customers/customer">
        <xsl:sort select="name"/>
        <customer name="{name}" city="{city}" orders="{count(key('orders-of', @id))}">
          <xsl:for-each select="key('orders-of', @id)">
            <xsl:variable name="lines">
              <xsl:for-each select="line">
                <amount><xsl:value-of select="@qty * key('product', @sku)/@price"/></amount>
              </xsl:for-each>
            </xsl:variable>
            <order no="{@no}" date="{@date}"
                   total="{format-number(sum(exsl:node-set($lines)/amount), '0.00')}">
              <xsl:for-each select="line">
                <line what="{key('product', @sku)}" qty="{@qty}"/>
              </xsl:for-each>
            </order>
          </xsl:for-each>
        </customer>
      </xsl:for-each>
    </invoices>
  </xsl:template>
</xsl:stylesheet>
